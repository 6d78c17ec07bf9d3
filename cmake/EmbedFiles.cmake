# SPDX-License-Identifier: Apache-2.0
# Writes OUTPUT, a C++ source with the bytes of FILES (separated by commas) as the table that viewlib/page.cpp looks into:
#
#     cmake -DOUTPUT=page_files.cpp -DFILES=a.html,b.js -P EmbedFiles.cmake
string(REPLACE "," ";" files "${FILES}")
set(arrays "")
set(rows "")
set(number 0)
foreach(file IN LISTS files)
    get_filename_component(name "${file}" NAME)
    file(READ "${file}" bytes HEX)
    string(REGEX REPLACE "(................................)" "\\1\n    " bytes "${bytes}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(APPEND arrays "/* ${name} */\nconst unsigned char file${number}[] = {\n    ${bytes}};\n\n")
    string(APPEND rows "    {\"${name}\", file${number}, sizeof file${number}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}" "/* Made by cmake/EmbedFiles.cmake; changes here are lost. */
#include \"embedded.h\"

namespace
{

${arrays}} // namespace

namespace viewlib
{

const EmbeddedFile embeddedFiles[] = {
${rows}};
const std::size_t embeddedFileCount = ${number};

} // namespace viewlib
")
