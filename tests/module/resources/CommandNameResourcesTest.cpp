// Local command and LISP function names: the module registers each command
// under the text of its id as the local name, so in the English library each
// id must give exactly the global name it stands for (a wrong or shifted id
// would register one command under another's name).
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "ExtendResourceTable.h"

namespace korva {
namespace {

struct LocalName {
    uint32_t id;
    const wchar_t* globalName;
};

// The module's command table: local-name id and global name of every command.
const LocalName kCommandNames[] = {
    {6000, L"DIMEX"},          {6001, L"DIMIM"},
    {6004, L"DIMREASSOC"},     {6005, L"EXTRIM"},
    {6006, L"MPEDIT"},         {6007, L"SYSVDLG"},
    {6008, L"BREAKLINE"},      {6009, L"EXOFFSET"},
    {6010, L"COPYM"},          {6011, L"EXPLAN"},
    {6014, L"LAYCUR1"},        {6015, L"LAYDEL"},
    {6016, L"LAYTHW"},         {6017, L"LAYISO"},
    {6019, L"LAYLCK"},         {6020, L"LAYULK"},
    {6021, L"LAYMCH"},         {6022, L"LAYON"},
    {6023, L"LAYOFF"},         {6024, L"LAYCUR"},
    {6028, L"-LAYDEL"},        {6029, L"-LAYMCH"},
    {6032, L"TXT2MTXT"},       {6033, L"TJUST"},
    {6034, L"TORIENT"},        {6035, L"TCIRCLE"},
    {6036, L"TCOUNT"},         {6037, L"TCASE"},
    {6038, L"CHGTHEI"},        {6039, L"CURSTYLE"},
    {6040, L"TXTULINE"},       {6041, L"DELULINE"},
    {6042, L"TEXTMASK"},       {6043, L"TEXTUNMASK"},
    {6045, L"MTEXP"},          {6046, L"TXTALIGN"},
    {6047, L"BURST"},          {6050, L"BSCALE"},
    {6051, L"BLOCK?"},         {6052, L"BCOUNT"},
    {6053, L"CHGBWID"},        {6054, L"CHGBANG"},
    {6055, L"CHGBHEI"},        {6056, L"CHGBLAY"},
    {6057, L"CHGBCOL"},        {6058, L"EXF"},
    {6059, L"EXP1"},           {6060, L"EXW"},
    {6061, L"EXC"},            {6062, L"EXWP"},
    {6063, L"EXCP"},           {6064, L"GETSEL"},
    {6069, L"ARCSUM"},         {6070, L"DELDIM"},
    {6075, L"AREASUM"},        {6076, L"DELHATCH"},
    {6077, L"LINESUM"},        {6078, L"ZVALTO0"},
    {6079, L"BLOCKSUM"},       {6080, L"AI_DIM_TEXTHOME"},
    {6081, L"AI_DIM_TEXTCENTER"}, {6082, L"AI_DIM_TEXTABOVE"},
    {6083, L"DESELECT"},       {6085, L"CHGLTSCA"},
    {6086, L"GROUPUNNAME"},    {6087, L"UNGROUP"},
    {6088, L"3DARRAY"},        {6090, L"3D"},
    {6091, L"AI_BOX"},         {6092, L"AI_WEDGE"},
    {6093, L"AI_PYRAMID"},     {6094, L"AI_CONE"},
    {6095, L"AI_SPHERE"},      {6096, L"AI_DOME"},
    {6097, L"AI_DISH"},        {6098, L"AI_TORUS"},
    {6100, L"AI_CYLINDER"},    {6103, L"CHSPACE"},
    {6104, L"ISOLATEOBJECTS"}, {6105, L"HIDEOBJECTS"},
    {6106, L"UNISOLATEOBJECTS"}, {6111, L"DELDUPL"},
    {6112, L"ARCCMP"},         {6113, L"ANGDIV"},
    {6114, L"JOINL"},          {6177, L"NCOPY"},
    {6321, L"SCALELISTEDIT"},  {6700, L"-SCALELISTEDIT"},
};

// The LISP function table: local-name id and global name of each row.
const LocalName kLispNames[] = {
    {6120, L"C:CAL"},
    {6121, L"CAL"},
    {6275, L"ai_refedit_alert"},
};

TEST(ExtendCommandNames, EachLocalCommandNameIsItsGlobalName) {
    EXPECT_EQ(std::size(kCommandNames), 88u) << "the command table has 88 rows";
    for (const LocalName& command : kCommandNames) {
        EXPECT_EQ(test::extendText(command.id), command.globalName) << "id " << command.id;
    }
}

TEST(ExtendCommandNames, EachLispFunctionNameIsItsGlobalName) {
    for (const LocalName& function : kLispNames) {
        EXPECT_EQ(test::extendText(function.id), function.globalName) << "id " << function.id;
    }
}

}  // namespace
}  // namespace korva
