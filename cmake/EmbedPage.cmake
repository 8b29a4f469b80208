# Puts the page of the report together and writes it as C++: the template with its styles and its
# scripts inside, cut in two where the data of a run come.
#
# The scripts are modules that import from each other. In the page they are one module, in the given
# order: without their imports, and with nothing exported. So a name at the top of one must not stand
# at the top of another; the browser says so if it does.
#
# cmake -D FOLDER=report -D STYLES=a.css,b.css -D SCRIPTS=a.js,b.js -D OUTPUT=page.cpp -P this file

cmake_minimum_required(VERSION 3.25)

# Sets a variable to the hash of a text as a content security policy has it.
function(hash_for_policy text variable)
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  string(SHA256 hex "${text}")
  set(base64 "")
  # Three bytes, six digits in hexadecimal, are four digits. 32 bytes: one is missing at the end.
  foreach(from RANGE 0 60 6)
    string(SUBSTRING "${hex}00" ${from} 6 part)
    math(EXPR bits "0x${part}")
    foreach(shift 18 12 6 0)
      math(EXPR digit "(${bits} >> ${shift}) & 63")
      string(SUBSTRING "${digits}" ${digit} 1 digit)
      string(APPEND base64 "${digit}")
    endforeach()
  endforeach()
  string(REGEX REPLACE ".$" "=" base64 "${base64}")
  set(${variable} "sha256-${base64}" PARENT_SCOPE)
endfunction()

# Sets a variable to the texts of the files, one behind the other.
function(read_all names variable)
  set(all "")
  string(REPLACE "," ";" names "${names}")
  foreach(name IN LISTS names)
    file(READ "${FOLDER}/${name}" text)
    string(APPEND all "\n${text}")
  endforeach()
  set(${variable} "${all}" PARENT_SCOPE)
endfunction()

read_all("${STYLES}" style)
read_all("${SCRIPTS}" script)
string(REGEX REPLACE "\nimport {[^}]*} from \"[^\"]*\";" "" script "${script}")
string(REPLACE "\nexport " "\n" script "${script}")
if(script MATCHES "\n(import|export) |</script|<!--" OR style MATCHES "</style")
  message(FATAL_ERROR "The page of the report cannot be put together: \"${CMAKE_MATCH_0}\" stands in "
                      "its scripts or styles, which must import by 'import { a } from \"b\";' and "
                      "export by 'export' before a declaration")
endif()
hash_for_policy("${style}" styleHash)
hash_for_policy("${script}" scriptHash)

file(READ "${FOLDER}/page.html" page)
string(REPLACE "@style-hash@" "${styleHash}" page "${page}")
string(REPLACE "@script-hash@" "${scriptHash}" page "${page}")
string(REPLACE "@style@" "${style}" page "${page}")
string(REPLACE "@script@" "${script}" page "${page}")
string(FIND "${page}" "@data@" cut)
string(SUBSTRING "${page}" 0 ${cut} before)
math(EXPR cut "${cut} + 6")
string(SUBSTRING "${page}" ${cut} -1 after)

file(WRITE "${OUTPUT}" "#include \"program/ReportPage.h\"

namespace applydic {

const std::string_view kPageBeforeData = R\"page(${before})page\";

const std::string_view kPageAfterData = R\"page(${after})page\";

}  // namespace applydic
")
