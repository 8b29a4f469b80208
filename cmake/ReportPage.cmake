# The page of the report, from its styles and scripts, put together in this order, as the source that
# reportPage names.
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH reportFolder)
set(embedPage ${CMAKE_CURRENT_LIST_DIR}/EmbedPage.cmake)
cmake_path(APPEND reportFolder report)
set(reportPage ${CMAKE_CURRENT_BINARY_DIR}/ReportPage.cpp)
set(reportStyles page.css difference-view.css)
set(reportScripts
  elements.js
  comparison.js
  entries.js
  row-list.js
  difference-table.js
  name-list.js
  message-list.js
  variable-row.js
  variable-list.js
  facet.js
  difference-view.js
  page.js)
set(reportParts page.html ${reportStyles} ${reportScripts})
list(TRANSFORM reportParts PREPEND ${reportFolder}/)
list(JOIN reportStyles "," reportStyles)
list(JOIN reportScripts "," reportScripts)
add_custom_command(
  OUTPUT ${reportPage}
  COMMAND ${CMAKE_COMMAND} -D FOLDER=${reportFolder} -D STYLES=${reportStyles}
          -D SCRIPTS=${reportScripts} -D OUTPUT=${reportPage}
          -P ${embedPage}
  DEPENDS ${embedPage} ${reportParts}
  COMMENT "Putting the page of the report together"
  VERBATIM)
