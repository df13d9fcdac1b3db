# Makes a C++ source of files: cmake -DOUTPUT=... -DTHREE=... -DLICENCE=... -DWEB=... -DSCRIPTS=a.js,b.js
# -P EmbedFiles.cmake. It defines what page/PageAssets.h declares.
#
# A page names the SHA-256 of each script and style that may run in it, so these are taken here, of the
# very bytes that are put in.

include(${CMAKE_CURRENT_LIST_DIR}/PageAssets.cmake)

set(text "#include \"page/PageAssets.h\"\n\nnamespace App {\n\nnamespace {\n\n")
set(assets "")

# Strings in C++ may be no longer than 64 KiB, so the bytes are numbers.
function(embed name content)
    expect_embeddable(${name} "${content}")
    string(SHA256 digest "${content}")
    string(HEX "${content}" bytes)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    set(text "${text}const unsigned char k${name}Bytes[] = {${bytes}0};\n" PARENT_SCOPE)
    string(TOLOWER ${name} field)
    set(assets "${assets}    {{reinterpret_cast<const char*>(k${name}Bytes), sizeof(k${name}Bytes) - 1},\n     \"${digest}\"},\n"
        PARENT_SCOPE)
endfunction()

embed(Template "${template}")
embed(Style "${style}")
embed(Three "${three}")
embed(Script "${script}")
embed(Licence "${licence}")
file(WRITE ${OUTPUT}
     "${text}\n}  // namespace\n\nconst PageAssets kPageAssets = {\n${assets}    \"${revision}\"};\n\n}  // namespace App\n")
