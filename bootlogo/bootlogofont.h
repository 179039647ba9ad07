#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/qglobal.h>

// The pixel font of boot logos: capitals, digits and some signs, five rows high and up to five columns wide. The
// records are constants, complete before any code runs.
//
// A new glyph needs its record here and in the .cpp file and a place in font_alphabet, whose length stands in both; and
// a new major version, since programs are linked with that length.

// One glyph.
struct FontLetter
{
    quint8 key;       // the character as an upper-case Latin-1 code
    qint8 width;      // in columns, 1 to 5
    qint8 pixels[25]; // five rows of five, the topmost first; above 0 is lit; a row uses its first `width` values
};

extern AVELDORAN_DATA_EXPORT const FontLetter font_alphabet[43]; // in the order of the records below

// The glyph of a letter or a digit, or of the sign that the name says.
extern AVELDORAN_DATA_EXPORT const FontLetter letter_A;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_B;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_C;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_D;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_E;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_F;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_G;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_H;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_I;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_J;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_K;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_L;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_M;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_N;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_O;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_P;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_Q;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_R;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_S;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_T;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_U;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_V;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_W;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_X;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_Y;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_Z;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_0;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_1;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_2;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_3;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_4;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_5;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_6;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_7;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_8;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_9;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_dot;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_colon;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_dash;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_exclamation;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_plus;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_space;
extern AVELDORAN_DATA_EXPORT const FontLetter letter_underscore;
