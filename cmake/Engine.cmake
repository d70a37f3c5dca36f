# What the build makes of the engine's inputs: flex of Scanner.l, gperf of the tables of names.

find_package(FLEX 2.6.4 REQUIRED)
find_program(GPERF gperf REQUIRED)
find_file(FLEX_LEXER_H FlexLexer.h HINTS ${FLEX_INCLUDE_DIRS} REQUIRED)

set(WQ_GENERATED ${CMAKE_CURRENT_BINARY_DIR}/generated)
set(engine common/core/css)
file(MAKE_DIRECTORY ${WQ_GENERATED}/${engine} ${WQ_GENERATED}/flex)

# The scanner's base class is flex's own under a private name, so that neither a scanner of the host nor
# another version of flex's header can meet it. It is installed with our headers, which so need none of flex's.
file(READ ${FLEX_LEXER_H} lexer)
string(REPLACE "yyFlexLexer" "@lexer@" lexer "${lexer}")
string(REPLACE "FlexLexer" "wqCSSFlexLexerInterface" lexer "${lexer}")
string(REPLACE "@lexer@" "wqCSSFlexLexer" lexer "${lexer}")
string(REPLACE "__FLEX_LEXER_H" "WQ_CSS_SCANNER_BASE_H" lexer "${lexer}")
file(CONFIGURE OUTPUT ${WQ_GENERATED}/${engine}/ScannerBase.h @ONLY
  CONTENT "// The base class of the scanner, made of flex's header.\n#pragma once\n#pragma GCC system_header\n\n${lexer}")
file(CONFIGURE OUTPUT ${WQ_GENERATED}/flex/FlexLexer.h CONTENT "#include <common/core/css/ScannerBase.h>\n")

add_custom_command(OUTPUT ${WQ_GENERATED}/${engine}/Scanner.cpp
  COMMAND ${FLEX_EXECUTABLE} -o ${WQ_GENERATED}/${engine}/Scanner.cpp ${engine}/Scanner.l
  WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
  DEPENDS ${engine}/Scanner.l VERBATIM)
set(WQ_GENERATED_SOURCES ${WQ_GENERATED}/${engine}/Scanner.cpp)
set_source_files_properties(${WQ_GENERATED}/${engine}/Scanner.cpp PROPERTIES
  INCLUDE_DIRECTORIES ${WQ_GENERATED}/flex COMPILE_OPTIONS -w)

# The names of the properties and their rows in Properties.def, as gperf wants them.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${engine}/Properties.def)
file(STRINGS ${engine}/Properties.def property_rows REGEX "^WQ_CSS_PROPERTY")
set(PROPERTY_NAMES "")
set(row 0)
foreach(property IN LISTS property_rows)
  string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*" "\\1" name "${property}")
  string(APPEND PROPERTY_NAMES "${name}, ${row}\n")
  math(EXPR row "${row} + 1")
endforeach()
configure_file(${engine}/PropertyNames.gperf.in ${WQ_GENERATED}/${engine}/PropertyNames.gperf @ONLY)

# make_table(INPUT) turns a gperf input into a source of the library.
macro(make_table input)
  get_filename_component(table ${input} NAME_WE)
  set(output ${WQ_GENERATED}/${engine}/${table}.cpp)
  add_custom_command(OUTPUT ${output}
    COMMAND ${GPERF} --output-file=${output} ${input}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
    DEPENDS ${input} VERBATIM)
  set_source_files_properties(${output} PROPERTIES COMPILE_OPTIONS "-w;-Dregister=")  # a word that C++17 took out
  list(APPEND WQ_GENERATED_SOURCES ${output})
endmacro()
make_table(${engine}/Colors.gperf)
make_table(${engine}/Keywords.gperf)
make_table(${WQ_GENERATED}/${engine}/PropertyNames.gperf)
