# Makes a C++ source of files: cmake -DOUTPUT=... -DTHREE=... -DLICENCE=... -DWEB=... -DSCRIPTS=a.js,b.js
# -P EmbedFiles.cmake. It defines what page/PageAssets.h declares.
#
# A page names the SHA-256 of each script and style that may run in it, so these are taken here, of the
# very bytes that are put in.

set(text "#include \"page/PageAssets.h\"\n\nnamespace App {\n\nnamespace {\n\n")
set(assets "")

# Strings in C++ may be no longer than 64 KiB, so the bytes are numbers.
function(embed name content)
    if(content MATCHES "\r")
        message(FATAL_ERROR "${name}: browsers change its line ends, and so its hash")
    endif()
    if(NOT name STREQUAL Template AND content MATCHES "</script|</style|<!--")
        message(FATAL_ERROR "${name}: would end the element that it is put in")
    endif()
    string(SHA256 digest "${content}")
    string(HEX "${content}" bytes)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    set(text "${text}const unsigned char k${name}Bytes[] = {${bytes}0};\n" PARENT_SCOPE)
    string(TOLOWER ${name} field)
    set(assets "${assets}    {{reinterpret_cast<const char*>(k${name}Bytes), sizeof(k${name}Bytes) - 1},\n     \"${digest}\"},\n"
        PARENT_SCOPE)
endfunction()

file(READ ${THREE} three)
file(READ ${WEB}/page.css style)
file(READ ${WEB}/page.html template)
set(script "\"use strict\";\n")
string(REPLACE "," ";" SCRIPTS "${SCRIPTS}")
foreach(file IN LISTS SCRIPTS)
    file(READ ${WEB}/${file} part)
    string(APPEND script "${part}")
endforeach()

# Of Debian's copyright file, what is said of the library as a whole: the owner, and the text.
file(READ ${LICENCE} copyright)
if(NOT copyright MATCHES "Copyright: ([^\n]*three.js authors)")
    message(FATAL_ERROR "${LICENCE} does not say whose three.js is")
endif()
set(owner "${CMAKE_MATCH_1}")
if(NOT copyright MATCHES "License: Expat\n( Permission is.*SOFTWARE\\.)")
    message(FATAL_ERROR "${LICENCE} does not hold the licence of three.js")
endif()
string(REGEX REPLACE "\n ?\\.?" "\n" licence "Copyright ${owner}\n\n${CMAKE_MATCH_1}")
string(REGEX REPLACE "\n Permission" "\nPermission" licence "${licence}")
string(REGEX MATCH "REVISION=\"([0-9]+)\"" found "${three}")
set(revision "${CMAKE_MATCH_1}")

embed(Template "${template}")
embed(Style "${style}")
embed(Three "${three}")
embed(Script "${script}")
embed(Licence "${licence}")
file(WRITE ${OUTPUT}
     "${text}\n}  // namespace\n\nconst PageAssets kPageAssets = {\n${assets}    \"r${revision}\"};\n\n}  // namespace App\n")
