foreach(part frmHelp frmHistory)
  target_sources(quenlin_windows PRIVATE ${CMAKE_CURRENT_LIST_DIR}/${part}.cpp)
endforeach()
