# SPDX-License-Identifier: Apache-2.0
# Writes a text file into a C++ source, so that a program needs no file beside it:
#   cmake -DINPUT=... -DOUTPUT=... -DHEADER=... -DFUNCTION=... -DNAMESPACE=... -P EmbedFile.cmake
# The text is cut at line ends: compilers limit the length of one literal.
file(READ "${INPUT}" text)
string(LENGTH "${text}" length)
set(source "// Made from a file by EmbedFile.cmake.\n#include \"${HEADER}\"\n\nnamespace ${NAMESPACE} {\n"
           "namespace {\n\nconstexpr const char* pieces[] = {\n")
string(CONCAT source ${source})
set(from 0)
while(from LESS length)
  string(SUBSTRING "${text}" ${from} 15000 piece)
  string(FIND "${piece}" "\n" end REVERSE)
  math(EXPR size "${end} + 1")
  if(size EQUAL 0)
    message(FATAL_ERROR "${INPUT} has a line that is too long for one literal")
  endif()
  string(SUBSTRING "${piece}" 0 ${size} piece)
  string(APPEND source "R\"~~~(${piece})~~~\",\n")
  math(EXPR from "${from} + ${size}")
endwhile()
string(APPEND source "};\n\n}  // namespace\n\nstd::string ${FUNCTION}() {\n  std::string text;\n"
                     "  for (const char* piece : pieces) text += piece;\n  return text;\n}\n\n"
                     "}  // namespace ${NAMESPACE}\n")
file(WRITE "${OUTPUT}" "${source}")
