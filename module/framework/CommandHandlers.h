// The command handlers the module registers: one plain function without
// arguments or result per command, named as the command table names them,
// then the handlers of the commands registered after the table (TXTEXP,
// TEXTFIT, MATHEI, LAYUNISO, GATTE, FCMP, FCMP_CL, TXT2MTXTOPTIONS).
#pragma once

// Drawing settings.
void SAG_dimex();
void SAG_dimim();
void Sysvdlg();
void cmd_scaleListEdit();
void cmd_scaleListEditCli();

// Dimensions.
void Dimreassoc();
void ai_dim_texthome();
void ai_dim_textcenter();
void ai_dim_textabove();

// Geometry editing.
void Extrim();
void Mpedit();
void Breakline();
void Exoffset();
void Copym();
void Explan();
void deldupl();
void arccmp();
void angdiv();
void joinl();
void cmd_ChangeSpace();
void chgltsca();

// Text tools.
void TextToMText();
void Tjust();
void Torient();
void Tcircle();
void Tcount();
void Tcase();
void ChgtHei();
void CurStyle();
void TxtUline();
void DelUline();
void TextMask();
void TextUnMask();
void MtExp();
void TxtAlign();
void txtexp();
void TextEdit();
void MatHei();
void Txt2MtxtOptions();

// Block tools.
void NCopy();
void Burst();
void BScale();
void BlockQ();
void BCount();
void cmd_ChgBlockLineWidth();
void cmd_ChgBlockTextAngle();
void cmd_ChgBlockTextHeight();
void cmd_ChgBlockLayer();
void cmd_ChgBlockColor();
void cmd_gatte();

// Selection, quantity and group tools.
void Exf();
void Exp();
void Exw();
void Exc();
void Exwp();
void Excp();
void GetSel();
void ArcSum();
void deldim();
void AreaSum();
void DelHatch();
void LineSum();
void ZvalTo0();
void BlockSum();
void ai_deselect();
void GroupUnName();
void UnGroup();

// 3D primitives.
void cmd_3DArray();
void cmd_torus_mesh();
void cmd_cone_mesh();
void cmd_wedge3d();
void cmd_sphere_mesh();
void cmd_pyramid_mesh();
void cmd_dome_mesh();
void cmd_dish_mesh();
void cmd_box_mesh();
void cmd_3d();
void cmd_cylinder_mesh();

// Layer tools and object isolation.
void LayCur1();
void LayDel();
void Laythw();
void layiso();
void LayUniso();
void LayLck();
void LayUlk();
void LayMch();
void LayOn();
void LayOff();
void LayCur();
void cmd_IsolateObjects();
void cmd_HideObjects();
void cmd_UnIsolateObjects();

// Drawing comparison.
void cmd_FCMP();
void cmd_FCMP_CL();
