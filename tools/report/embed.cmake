# Writes a header with the page of the report: page.html with the styles, the scripts and the licences
# in it, cut where the data go.
# Run with -P; needs PAGE_FOLDER, DYGRAPHS_FOLDER, LEAFLET_FOLDER, DYGRAPHS_LICENCE_FILE,
# LEAFLET_LICENCE_FILE and OUTPUT.
cmake_minimum_required(VERSION 3.25)

# The hash of a text as content security policies write it: SHA-256 in base 64.
function(hash_for_policy text out)
    string(SHA256 hex "${text}")
    set(letters "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    set(result "")
    string(APPEND hex "00") # 32 bytes are filled up to 33, which are 44 letters
    foreach(at RANGE 0 60 6)
        string(SUBSTRING "${hex}" ${at} 6 three)
        math(EXPR bits "0x${three}")
        foreach(shift 18 12 6 0)
            math(EXPR letter "(${bits} >> ${shift}) & 63")
            string(SUBSTRING "${letters}" ${letter} 1 one)
            string(APPEND result "${one}")
        endforeach()
    endforeach()
    string(SUBSTRING "${result}" 0 43 result) # the last letter is that of the filling
    set(${out} "'sha256-${result}='" PARENT_SCOPE)
endfunction()

function(read_html file out)
    file(READ "${file}" text)
    string(REPLACE "&" "&amp;" text "${text}")
    string(REPLACE "<" "&lt;" text "${text}")
    string(REPLACE ">" "&gt;" text "${text}")
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

file(READ "${DYGRAPHS_FOLDER}/dygraph.css" dygraphsStyle)
file(READ "${LEAFLET_FOLDER}/leaflet.css" leafletStyle)
file(READ "${PAGE_FOLDER}/page.css" pageStyle)
set(style "${dygraphsStyle}\n${leafletStyle}\n${pageStyle}")
file(READ "${DYGRAPHS_FOLDER}/dygraph.min.js" dygraphs)
file(READ "${LEAFLET_FOLDER}/leaflet.min.js" leaflet)
file(READ "${PAGE_FOLDER}/page.js" pageScript)
set(script "${dygraphs}\n${leaflet}\n${pageScript}")
# The address of a source map is of no use in a page that stands alone.
string(REGEX REPLACE "\n?//# sourceMappingURL=[^\n]*" "" script "${script}")
string(REGEX REPLACE "/\\*# sourceMappingURL=[^\n]*\\*/" "" style "${style}")
foreach(text script style)
    string(TOLOWER "${${text}}" lower)
    string(FIND "${lower}" "</${text}" end)
    if(NOT end EQUAL -1)
        message(FATAL_ERROR "the ${text} would end its own element")
    endif()
endforeach()

hash_for_policy("${script}" scriptHash)
hash_for_policy("${style}" styleHash)
# dygraphs sets one style as an attribute, on an element without content.
hash_for_policy("margin: 0; padding: 0 0 0 1em; border: 0;" attributeHash)
string(CONCAT policy "default-src 'none'; script-src ${scriptHash}; style-src ${styleHash}; "
    "style-src-attr 'unsafe-hashes' ${attributeHash}; "
    "img-src data:; base-uri 'none'; form-action 'none'")
read_html("${DYGRAPHS_LICENCE_FILE}" dygraphsLicence)
read_html("${LEAFLET_LICENCE_FILE}" leafletLicence)

file(READ "${PAGE_FOLDER}/page.html" page)
string(FIND "${page}" "@DATA@" at)
string(SUBSTRING "${page}" 0 ${at} before)
math(EXPR at "${at} + 6")
string(SUBSTRING "${page}" ${at} -1 after)
string(REPLACE "@POLICY@" "${policy}" before "${before}")
string(REPLACE "@STYLE@" "${style}" before "${before}")
string(REPLACE "@DYGRAPHS_LICENCE@" "${dygraphsLicence}" before "${before}")
string(REPLACE "@LEAFLET_LICENCE@" "${leafletLicence}" before "${before}")
string(REPLACE "@SCRIPT@" "${script}" after "${after}")

file(WRITE "${OUTPUT}" "// Made by CMake of tools/report/page.html, page.css and page.js.
#pragma once

#include <string_view>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored \"-Woverlength-strings\"
constexpr char beforeDataText[] = R\"PAGE(")
file(APPEND "${OUTPUT}" "${before}")
file(APPEND "${OUTPUT}" ")PAGE\";\nconstexpr char afterDataText[] = R\"PAGE(")
file(APPEND "${OUTPUT}" "${after}")
file(APPEND "${OUTPUT}" ")PAGE\";
#pragma GCC diagnostic pop

constexpr std::string_view pageBeforeData(beforeDataText, sizeof beforeDataText - 1);
constexpr std::string_view pageAfterData(afterDataText, sizeof afterDataText - 1);
")
