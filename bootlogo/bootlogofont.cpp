#include "bootlogo/bootlogofont.h"

static_assert(sizeof(FontLetter) == 27, "the records are bytes without gaps");

namespace {

// Each row as a text in which '#' is a lit pixel, the topmost first. Their length is the width.
template<int N>
constexpr FontLetter glyph(char key, const char (&row0)[N], const char (&row1)[N], const char (&row2)[N],
                           const char (&row3)[N], const char (&row4)[N])
{
    static_assert(N - 1 >= 1 && N - 1 <= 5, "a glyph has one to five columns");
    FontLetter letter = {static_cast<quint8>(key), N - 1, {}};
    for (int column = 0; column < N - 1; ++column) {
        letter.pixels[column] = row0[column] == '#';
        letter.pixels[5 + column] = row1[column] == '#';
        letter.pixels[10 + column] = row2[column] == '#';
        letter.pixels[15 + column] = row3[column] == '#';
        letter.pixels[20 + column] = row4[column] == '#';
    }
    return letter;
}

} // namespace

constexpr FontLetter letter_A = glyph('A', ".#.", "#.#", "###", "#.#", "#.#");
constexpr FontLetter letter_B = glyph('B', "##.", "#.#", "##.", "#.#", "##.");
constexpr FontLetter letter_C = glyph('C', ".##", "#..", "#..", "#..", ".##");
constexpr FontLetter letter_D = glyph('D', "##.", "#.#", "#.#", "#.#", "##.");
constexpr FontLetter letter_E = glyph('E', "###", "#..", "##.", "#..", "###");
constexpr FontLetter letter_F = glyph('F', "###", "#..", "###", "#..", "#..");
constexpr FontLetter letter_G = glyph('G', "###", "#..", "#.#", "#.#", "###");
constexpr FontLetter letter_H = glyph('H', "#.#", "#.#", "###", "#.#", "#.#");
constexpr FontLetter letter_I = glyph('I', "###", ".#.", ".#.", ".#.", "###");
constexpr FontLetter letter_J = glyph('J', "..#", "..#", "..#", "#.#", "###");
constexpr FontLetter letter_K = glyph('K', "#..#", "#.#.", "##..", "#.#.", "#..#");
constexpr FontLetter letter_L = glyph('L', "#..", "#..", "#..", "#..", "###");
constexpr FontLetter letter_M = glyph('M', "##.##", "#.#.#", "#.#.#", "#...#", "#...#");
constexpr FontLetter letter_N = glyph('N', "#..#", "##.#", "#.##", "#..#", "#..#");
constexpr FontLetter letter_O = glyph('O', "###", "#.#", "#.#", "#.#", "###");
constexpr FontLetter letter_P = glyph('P', "##.", "#.#", "##.", "#..", "#..");
constexpr FontLetter letter_Q = glyph('Q', ".##.", "#..#", "#..#", "#.##", ".###");
constexpr FontLetter letter_R = glyph('R', "##.", "#.#", "##.", "#.#", "#.#");
constexpr FontLetter letter_S = glyph('S', "###", "#..", "###", "..#", "###");
constexpr FontLetter letter_T = glyph('T', "###", ".#.", ".#.", ".#.", ".#.");
constexpr FontLetter letter_U = glyph('U', "#.#", "#.#", "#.#", "#.#", "###");
constexpr FontLetter letter_V = glyph('V', "#.#", "#.#", "#.#", "#.#", ".#.");
constexpr FontLetter letter_W = glyph('W', "#...#", "#...#", "#.#.#", "#.#.#", ".#.#.");
constexpr FontLetter letter_X = glyph('X', "#.#", ".#.", ".#.", ".#.", "#.#");
constexpr FontLetter letter_Y = glyph('Y', "#.#", "#.#", ".#.", ".#.", ".#.");
constexpr FontLetter letter_Z = glyph('Z', "###", "..#", ".#.", "#..", "###");
constexpr FontLetter letter_0 = glyph('0', ".#.", "#.#", "#.#", "#.#", ".#.");
constexpr FontLetter letter_1 = glyph('1', ".#", "##", ".#", ".#", ".#");
constexpr FontLetter letter_2 = glyph('2', ".#.", "#.#", "..#", ".#.", "###");
constexpr FontLetter letter_3 = glyph('3', "##.", "..#", ".#.", "..#", "##.");
constexpr FontLetter letter_4 = glyph('4', "#.#", "#.#", "###", "..#", "..#");
constexpr FontLetter letter_5 = glyph('5', "###", "#..", "##.", "..#", "##.");
constexpr FontLetter letter_6 = glyph('6', ".##", "#..", "###", "#.#", "###");
constexpr FontLetter letter_7 = glyph('7', "###", "..#", ".#.", ".#.", "#..");
constexpr FontLetter letter_8 = glyph('8', "###", "#.#", "###", "#.#", "###");
constexpr FontLetter letter_9 = glyph('9', "###", "#.#", "###", "..#", ".#.");
constexpr FontLetter letter_dot = glyph('.', ".", ".", ".", ".", "#");
constexpr FontLetter letter_colon = glyph(':', ".", ".", "#", ".", "#");
constexpr FontLetter letter_dash = glyph('-', "..", "..", "##", "..", "..");
constexpr FontLetter letter_exclamation = glyph('!', "#", "#", "#", ".", "#");
constexpr FontLetter letter_plus = glyph('+', "...", ".#.", "###", ".#.", "...");
constexpr FontLetter letter_space = glyph(' ', ".", ".", ".", ".", ".");
constexpr FontLetter letter_underscore = glyph('_', "...", "...", "...", "...", "###");
constexpr FontLetter font_alphabet[43] = {
    letter_A,    letter_B,     letter_C,         letter_D, letter_E,   letter_F,     letter_G,    letter_H,
    letter_I,    letter_J,     letter_K,         letter_L, letter_M,   letter_N,     letter_O,    letter_P,
    letter_Q,    letter_R,     letter_S,         letter_T, letter_U,   letter_V,     letter_W,    letter_X,
    letter_Y,    letter_Z,     letter_0,         letter_1, letter_2,   letter_3,     letter_4,    letter_5,
    letter_6,    letter_7,     letter_8,         letter_9, letter_dot, letter_colon, letter_dash, letter_exclamation,
    letter_plus, letter_space, letter_underscore};
