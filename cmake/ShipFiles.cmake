# Copies what ships beside the program from SOURCE to TARGET, the program's folder, and marks that folder
# as the program's own with a file named `portable`. A file that the user changed there stays as it is:
# KEPT holds what was copied last, and only an absent file or one equal to that is replaced.
file(MAKE_DIRECTORY ${TARGET} ${KEPT})
file(GLOB names RELATIVE ${SOURCE} ${SOURCE}/*)
foreach(name IN LISTS names)
  set(replace TRUE)
  if(EXISTS ${TARGET}/${name})
    file(SHA256 ${TARGET}/${name} there)
    file(SHA256 ${SOURCE}/${name} new)
    set(last "")
    if(EXISTS ${KEPT}/${name})
      file(SHA256 ${KEPT}/${name} last)
    endif()
    if(there STREQUAL new OR NOT there STREQUAL last)
      set(replace FALSE)
    endif()
  endif()
  if(replace)
    file(COPY_FILE ${SOURCE}/${name} ${TARGET}/${name})
  endif()
  file(COPY_FILE ${SOURCE}/${name} ${KEPT}/${name} ONLY_IF_DIFFERENT)
endforeach()

if(NOT EXISTS ${TARGET}/portable)
  file(WRITE ${TARGET}/portable
    "While this file is here, Quenlin keeps its catalogue and its other files in this folder.\n")
endif()
