target_sources(quenlin_windows PRIVATE ${CMAKE_CURRENT_LIST_DIR}/help/frmHelp.cpp ${CMAKE_CURRENT_LIST_DIR}/frmHistory.cpp)
