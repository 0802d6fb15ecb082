# What examples/calls.json says of the tools: example_tools, their names in the order of the
# catalogue, and about_<tool>, a line for people about each.
set(calls ${PROJECT_SOURCE_DIR}/examples/calls.json)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${calls})
file(READ ${calls} rows)

set(example_tools "")
string(JSON count LENGTH "${rows}")
math(EXPR last "${count} - 1")
foreach(row RANGE ${last})
  string(JSON tool GET "${rows}" ${row} tool)
  string(JSON about_${tool} GET "${rows}" ${row} about)
  list(APPEND example_tools ${tool})
endforeach()
