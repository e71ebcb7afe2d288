foreach(part frmItemView frmMain frmMainLists frmMainMenus)
  target_sources(quenlin_windows PRIVATE ${CMAKE_CURRENT_LIST_DIR}/windows/${part}.cpp)
endforeach()
