// Names of the window's controls. Only #defines: the resource compiler reads this file too.
#pragma once

#define Msximg_Icon 100
#define Converter_Dialog 200
#define Converter_Open 201
#define Converter_Name 202
#define Converter_Original 203
#define Converter_Preview 204
#define Converter_Palette 205
#define Converter_Screens 206
#define Converter_Dithers 207
#define Converter_Palettes 208
#define Converter_Sizes 209
#define Converter_Save 210
#define Converter_SavePalette 211
#define Converter_Copy 212
#define Converter_Status 213
