// Handlers of the commands whose work is not written yet: each prints, with the
// module's resources current, the notice 9900 with its own global command name
// (found in the command table by the handler's address) and changes nothing.
#include "framework/CommandHandlers.h"
#include "framework/CommandTable.h"
#include "framework/ModuleResources.h"
#include "kcut.h"

namespace {

constexpr UINT kNotAvailableId = 9900;

const wchar_t* globalNameOf(KcRxFunctionPtr handler) {
    for (const auto& rows : {kvCommandTable(), kvExtraCommands()}) {
        for (const KvCommandRow& row : rows) {
            if (row.handler == handler) return row.globalName;
        }
    }
    return L"";
}

void reportNotAvailable(KcRxFunctionPtr handler) {
    CKcModuleResourceOverride resources(hLibModule);
    __ResourceString notice(kNotAvailableId, L"\nThe command %s is not available yet.");
    kcutPrintf(notice, globalNameOf(handler));
}

}  // namespace

void SAG_dimex() { reportNotAvailable(SAG_dimex); }
void SAG_dimim() { reportNotAvailable(SAG_dimim); }
void Sysvdlg() { reportNotAvailable(Sysvdlg); }
void cmd_scaleListEdit() { reportNotAvailable(cmd_scaleListEdit); }
void cmd_scaleListEditCli() { reportNotAvailable(cmd_scaleListEditCli); }
void Dimreassoc() { reportNotAvailable(Dimreassoc); }
void ai_dim_texthome() { reportNotAvailable(ai_dim_texthome); }
void ai_dim_textcenter() { reportNotAvailable(ai_dim_textcenter); }
void ai_dim_textabove() { reportNotAvailable(ai_dim_textabove); }
void Extrim() { reportNotAvailable(Extrim); }
void Mpedit() { reportNotAvailable(Mpedit); }
void Breakline() { reportNotAvailable(Breakline); }
void Exoffset() { reportNotAvailable(Exoffset); }
void Copym() { reportNotAvailable(Copym); }
void Explan() { reportNotAvailable(Explan); }
void deldupl() { reportNotAvailable(deldupl); }
void arccmp() { reportNotAvailable(arccmp); }
void angdiv() { reportNotAvailable(angdiv); }
void joinl() { reportNotAvailable(joinl); }
void cmd_ChangeSpace() { reportNotAvailable(cmd_ChangeSpace); }
void chgltsca() { reportNotAvailable(chgltsca); }
void TextToMText() { reportNotAvailable(TextToMText); }
void Tjust() { reportNotAvailable(Tjust); }
void Torient() { reportNotAvailable(Torient); }
void Tcircle() { reportNotAvailable(Tcircle); }
void Tcount() { reportNotAvailable(Tcount); }
void ChgtHei() { reportNotAvailable(ChgtHei); }
void CurStyle() { reportNotAvailable(CurStyle); }
void TxtUline() { reportNotAvailable(TxtUline); }
void DelUline() { reportNotAvailable(DelUline); }
void TextMask() { reportNotAvailable(TextMask); }
void TextUnMask() { reportNotAvailable(TextUnMask); }
void MtExp() { reportNotAvailable(MtExp); }
void TxtAlign() { reportNotAvailable(TxtAlign); }
void txtexp() { reportNotAvailable(txtexp); }
void TextEdit() { reportNotAvailable(TextEdit); }
void MatHei() { reportNotAvailable(MatHei); }
void Txt2MtxtOptions() { reportNotAvailable(Txt2MtxtOptions); }
void NCopy() { reportNotAvailable(NCopy); }
void BScale() { reportNotAvailable(BScale); }
void BlockQ() { reportNotAvailable(BlockQ); }
void BCount() { reportNotAvailable(BCount); }
void cmd_ChgBlockLineWidth() { reportNotAvailable(cmd_ChgBlockLineWidth); }
void cmd_ChgBlockTextAngle() { reportNotAvailable(cmd_ChgBlockTextAngle); }
void cmd_ChgBlockTextHeight() { reportNotAvailable(cmd_ChgBlockTextHeight); }
void cmd_ChgBlockLayer() { reportNotAvailable(cmd_ChgBlockLayer); }
void cmd_ChgBlockColor() { reportNotAvailable(cmd_ChgBlockColor); }
void cmd_gatte() { reportNotAvailable(cmd_gatte); }
void Exf() { reportNotAvailable(Exf); }
void Exp() { reportNotAvailable(Exp); }
void Exw() { reportNotAvailable(Exw); }
void Exc() { reportNotAvailable(Exc); }
void Exwp() { reportNotAvailable(Exwp); }
void Excp() { reportNotAvailable(Excp); }
void GetSel() { reportNotAvailable(GetSel); }
void ArcSum() { reportNotAvailable(ArcSum); }
void deldim() { reportNotAvailable(deldim); }
void AreaSum() { reportNotAvailable(AreaSum); }
void DelHatch() { reportNotAvailable(DelHatch); }
void LineSum() { reportNotAvailable(LineSum); }
void ZvalTo0() { reportNotAvailable(ZvalTo0); }
void BlockSum() { reportNotAvailable(BlockSum); }
void ai_deselect() { reportNotAvailable(ai_deselect); }
void GroupUnName() { reportNotAvailable(GroupUnName); }
void UnGroup() { reportNotAvailable(UnGroup); }
void cmd_3DArray() { reportNotAvailable(cmd_3DArray); }
void cmd_torus_mesh() { reportNotAvailable(cmd_torus_mesh); }
void cmd_cone_mesh() { reportNotAvailable(cmd_cone_mesh); }
void cmd_wedge3d() { reportNotAvailable(cmd_wedge3d); }
void cmd_sphere_mesh() { reportNotAvailable(cmd_sphere_mesh); }
void cmd_pyramid_mesh() { reportNotAvailable(cmd_pyramid_mesh); }
void cmd_dome_mesh() { reportNotAvailable(cmd_dome_mesh); }
void cmd_dish_mesh() { reportNotAvailable(cmd_dish_mesh); }
void cmd_box_mesh() { reportNotAvailable(cmd_box_mesh); }
void cmd_3d() { reportNotAvailable(cmd_3d); }
void cmd_cylinder_mesh() { reportNotAvailable(cmd_cylinder_mesh); }
void LayDel() { reportNotAvailable(LayDel); }
void layiso() { reportNotAvailable(layiso); }
void LayUniso() { reportNotAvailable(LayUniso); }
void cmd_IsolateObjects() { reportNotAvailable(cmd_IsolateObjects); }
void cmd_HideObjects() { reportNotAvailable(cmd_HideObjects); }
void cmd_UnIsolateObjects() { reportNotAvailable(cmd_UnIsolateObjects); }
void cmd_FCMP() { reportNotAvailable(cmd_FCMP); }
void cmd_FCMP_CL() { reportNotAvailable(cmd_FCMP_CL); }
