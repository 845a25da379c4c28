# Writes INPUT as the body of korva::db::emptyDrawingTemplate() into OUTPUT.
file(READ ${INPUT} content HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${content}")
string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "// Generated from ${INPUT}; do not edit.\n#include \"db/DrawingIo.h\"\n\nnamespace korva::db {\n\nnamespace {\nconst unsigned char kTemplate[] = {\n${bytes}};\n}  // namespace\n\nstd::string_view emptyDrawingTemplate() {\n    return {reinterpret_cast<const char*>(kTemplate), sizeof kTemplate};\n}\n\n}  // namespace korva::db\n")
