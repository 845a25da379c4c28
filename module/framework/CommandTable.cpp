// The command table in its fixed order. The ids are not in numeric order and
// two handlers appear twice (the dash-prefixed command-line names): both on
// purpose.
#include "framework/CommandTable.h"

#include "framework/CommandHandlers.h"

namespace {

using namespace KcRx;
constexpr Kcad::Int32 kPickFirst = kCmdUsePickSet;
constexpr Kcad::Int32 kPickFirstRedraw = kCmdUsePickSet | kCmdRedraw;
constexpr Kcad::Int32 kLayoutOnly = kCmdUsePickSet | kCmdNoPerspective | kCmdNoTileMode | kCmdNoBlockEditor;

const KvCommandRow commandTable[] = {
    {L"DIMEX", SAG_dimex, kCmdModal, 6000},
    {L"DIMIM", SAG_dimim, kCmdModal, 6001},
    {L"DIMREASSOC", Dimreassoc, kCmdModal, 6004},
    {L"EXTRIM", Extrim, kCmdModal, 6005},
    {L"MPEDIT", Mpedit, kCmdModal, 6006},
    {L"SYSVDLG", Sysvdlg, kCmdModal, 6007},
    {L"BREAKLINE", Breakline, kCmdModal, 6008},
    {L"EXOFFSET", Exoffset, kCmdModal, 6009},
    {L"COPYM", Copym, kPickFirstRedraw, 6010},
    {L"EXPLAN", Explan, kCmdModal, 6011},
    {L"TXT2MTXT", TextToMText, kCmdModal, 6032},
    {L"TJUST", Tjust, kPickFirst, 6033},
    {L"TORIENT", Torient, kCmdModal, 6034},
    {L"TCIRCLE", Tcircle, kCmdModal, 6035},
    {L"TCOUNT", Tcount, kCmdModal, 6036},
    {L"TCASE", Tcase, kCmdModal, 6037},
    {L"CHGTHEI", ChgtHei, kCmdModal, 6038},
    {L"CURSTYLE", CurStyle, kCmdModal, 6039},
    {L"TXTULINE", TxtUline, kCmdModal, 6040},
    {L"DELULINE", DelUline, kCmdModal, 6041},
    {L"TEXTMASK", TextMask, kCmdModal, 6042},
    {L"TEXTUNMASK", TextUnMask, kCmdModal, 6043},
    {L"MTEXP", MtExp, kCmdModal, 6045},
    {L"TXTALIGN", TxtAlign, kCmdModal, 6046},
    {L"NCOPY", NCopy, kCmdModal, 6177},
    {L"BURST", Burst, kPickFirstRedraw, 6047},
    {L"BSCALE", BScale, kPickFirstRedraw, 6050},
    {L"BLOCK?", BlockQ, kCmdModal, 6051},
    {L"BCOUNT", BCount, kCmdModal, 6052},
    {L"CHGBWID", cmd_ChgBlockLineWidth, kPickFirstRedraw, 6053},
    {L"CHGBANG", cmd_ChgBlockTextAngle, kPickFirstRedraw, 6054},
    {L"CHGBHEI", cmd_ChgBlockTextHeight, kPickFirstRedraw, 6055},
    {L"CHGBLAY", cmd_ChgBlockLayer, kPickFirstRedraw, 6056},
    {L"CHGBCOL", cmd_ChgBlockColor, kPickFirstRedraw, 6057},
    {L"EXF", Exf, kCmdModal, 6058},
    {L"EXP1", Exp, kPickFirstRedraw, 6059},
    {L"EXW", Exw, kCmdModal, 6060},
    {L"EXC", Exc, kCmdModal, 6061},
    {L"EXWP", Exwp, kCmdModal, 6062},
    {L"EXCP", Excp, kCmdModal, 6063},
    {L"GETSEL", GetSel, kCmdModal, 6064},
    {L"ARCSUM", ArcSum, kCmdModal, 6069},
    {L"DELDIM", deldim, kCmdModal, 6070},
    {L"AREASUM", AreaSum, kCmdModal, 6075},
    {L"DELHATCH", DelHatch, kPickFirst, 6076},
    {L"LINESUM", LineSum, kCmdModal, 6077},
    {L"ZVALTO0", ZvalTo0, kCmdModal, 6078},
    {L"BLOCKSUM", BlockSum, kCmdModal, 6079},
    {L"AI_DIM_TEXTHOME", ai_dim_texthome, kPickFirstRedraw, 6080},
    {L"AI_DIM_TEXTCENTER", ai_dim_textcenter, kPickFirstRedraw, 6081},
    {L"AI_DIM_TEXTABOVE", ai_dim_textabove, kPickFirstRedraw, 6082},
    {L"DESELECT", ai_deselect, kCmdModal, 6083},
    {L"CHGLTSCA", chgltsca, kCmdModal, 6085},
    {L"3DARRAY", cmd_3DArray, kPickFirstRedraw, 6088},
    {L"AI_TORUS", cmd_torus_mesh, kCmdModal, 6098},
    {L"AI_CONE", cmd_cone_mesh, kCmdModal, 6094},
    {L"AI_WEDGE", cmd_wedge3d, kCmdModal, 6092},
    {L"AI_SPHERE", cmd_sphere_mesh, kCmdModal, 6095},
    {L"AI_PYRAMID", cmd_pyramid_mesh, kCmdModal, 6093},
    {L"AI_DOME", cmd_dome_mesh, kCmdModal, 6096},
    {L"AI_DISH", cmd_dish_mesh, kCmdModal, 6097},
    {L"AI_BOX", cmd_box_mesh, kCmdModal, 6091},
    {L"3D", cmd_3d, kCmdModal, 6090},
    {L"AI_CYLINDER", cmd_cylinder_mesh, kCmdModal, 6100},
    {L"DELDUPL", deldupl, kPickFirst, 6111},
    {L"ARCCMP", arccmp, kCmdModal, 6112},
    {L"ANGDIV", angdiv, kCmdModal, 6113},
    {L"JOINL", joinl, kCmdModal, 6114},
    {L"CHSPACE", cmd_ChangeSpace, kLayoutOnly, 6103},
    {L"ISOLATEOBJECTS", cmd_IsolateObjects, kPickFirstRedraw, 6104},
    {L"HIDEOBJECTS", cmd_HideObjects, kPickFirstRedraw, 6105},
    {L"UNISOLATEOBJECTS", cmd_UnIsolateObjects, kPickFirstRedraw, 6106},
    {L"GROUPUNNAME", GroupUnName, kPickFirstRedraw, 6086},
    {L"UNGROUP", UnGroup, kPickFirstRedraw, 6087},
    {L"LAYCUR1", LayCur1, kCmdModal, 6014},
    {L"LAYDEL", LayDel, kCmdModal, 6015},
    {L"LAYTHW", Laythw, kCmdModal, 6016},
    {L"LAYISO", layiso, kPickFirstRedraw, 6017},
    {L"LAYLCK", LayLck, kCmdModal, 6019},
    {L"LAYULK", LayUlk, kCmdModal, 6020},
    {L"LAYMCH", LayMch, kCmdModal, 6021},
    {L"LAYON", LayOn, kCmdModal, 6022},
    {L"LAYOFF", LayOff, kCmdModal, 6023},
    {L"LAYCUR", LayCur, kPickFirstRedraw, 6024},
    {L"-LAYDEL", LayDel, kCmdModal, 6028},
    {L"-LAYMCH", LayMch, kCmdModal, 6029},
    {L"SCALELISTEDIT", cmd_scaleListEdit, kCmdModal, 6321},
    {L"-SCALELISTEDIT", cmd_scaleListEditCli, kCmdModal, 6700},
};
static_assert(std::size(commandTable) == 88, "the command table has 88 rows");

// Commands outside the table: no local-name resource, the global name serves.
const KvCommandRow extraCommands[] = {
    {L"TXTEXP", txtexp, kCmdModal, 0},
    {L"TEXTFIT", TextEdit, kCmdModal, 0},
    {L"MATHEI", MatHei, kCmdModal, 0},
    {L"LAYUNISO", LayUniso, kCmdModal, 0},
    {L"GATTE", cmd_gatte, kCmdModal, 0},
    {L"FCMP", cmd_FCMP, kCmdModal, 0},
    {L"FCMP_CL", cmd_FCMP_CL, kCmdModal, 0},
    {L"TXT2MTXTOPTIONS", Txt2MtxtOptions, kCmdModal, 0},
};

}  // namespace

std::span<const KvCommandRow> kvCommandTable() { return commandTable; }
std::span<const KvCommandRow> kvExtraCommands() { return extraCommands; }
