# Writes the files of the HTML report into a C++ source, with the hashes by which the content policy
# knows the style and the script: cmake -DFOLDER=... -DOUTPUT=... -P embed.cmake

set(alphabet
  ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)

# base64(HEX RESULT): the bytes that hexadecimal digits stand for, in base 64.
function(base64 hex result)
  string(LENGTH "${hex}" digits)
  set(text "")
  set(at 0)
  while(at LESS digits)
    string(SUBSTRING "${hex}000000" ${at} 6 group)  # three bytes make four characters
    math(EXPR bits "0x${group}")
    math(EXPR left "(${digits} - ${at}) / 2")
    foreach(place RANGE 3)
      if(place LESS_EQUAL left)
        math(EXPR value "(${bits} >> (18 - 6 * ${place})) & 63")
        string(SUBSTRING ${alphabet} ${value} 1 character)
        string(APPEND text ${character})
      else()
        string(APPEND text "=")
      endif()
    endforeach()
    math(EXPR at "${at} + 6")
  endwhile()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

string(CONCAT source "// Made by embed.cmake.\n#include \"page_files.h\"\n\n"
  "namespace gait_report::page_files {\n\n")
foreach(file page.mustache walk.mustache index.mustache page.css page.js)
  file(READ ${FOLDER}/${file} text)
  string(REGEX REPLACE "\\.mustache$" "" name ${file})
  string(REPLACE "." "_" name ${name})
  string(APPEND source "const std::string_view ${name} = R\"file(${text})file\";\n")
  if(file MATCHES "\\.(css|js)$")
    string(SHA256 hash "${text}")
    base64(${hash} hash)
    string(APPEND source "const std::string_view ${name}_hash = \"sha256-${hash}\";\n")
  endif()
endforeach()
string(APPEND source "\n}  // namespace gait_report::page_files\n")
file(WRITE ${OUTPUT} "${source}")
