#include "font.h"

#include <algorithm>

namespace {

using rv::Glyph;
using rv::kLineHeight;

// Rows are told from the top of capital letters, which stand on row 7; three are above for accents.
constexpr int kAccentRows = 3;

// Rows with a blank between them, a hash for each pixel.
struct Drawing {
    char32_t character;
    int first_row;
    std::string_view rows;
};

// clang-format off
constexpr Drawing kDrawings[] = {
    {'!', 0, "# # # # # # . #"},
    {'"', 0, "#.# #.# #.#"},
    {'#', 0, ".#.#. .#.#. ##### .#.#. .#.#. ##### .#.#. .#.#."},
    {'$', 0, "..#.. .#### #.#.. .###. ..#.# ..#.# ####. ..#.."},
    {'%', 0, "##..# ##..# ...#. ..#.. ..#.. .#... #..## #..##"},
    {'&', 0, ".##... #..#.. #..#.. .##... #..#.# #...#. #..##. .##..#"},
    {'\'', 0, "# # #"},
    {'(', 0, ".# #. #. #. #. #. #. #. .#"},
    {')', 0, "#. .# .# .# .# .# .# .# #."},
    {'*', 0, "..#.. #.#.# .###. #.#.# ..#.."},
    {'+', 2, "..#.. ..#.. ##### ..#.. ..#.."},
    {',', 6, ".# .# #."},
    {'-', 4, "###"},
    {'.', 6, "# #"},
    {'/', 0, "...# ...# ..#. ..#. .#.. .#.. #... #..."},
    {'0', 0, ".###. #...# #...# #...# #...# #...# #...# .###."},
    {'1', 0, "..#.. .##.. #.#.. ..#.. ..#.. ..#.. ..#.. #####"},
    {'2', 0, ".###. #...# ....# ....# ...#. ..#.. .#... #####"},
    {'3', 0, ".###. #...# ....# ..##. ....# ....# #...# .###."},
    {'4', 0, "...#. ..##. .#.#. #..#. #..#. ##### ...#. ...#."},
    {'5', 0, "##### #.... #.... ####. ....# ....# #...# .###."},
    {'6', 0, ".###. #...# #.... ####. #...# #...# #...# .###."},
    {'7', 0, "##### ....# ....# ...#. ...#. ..#.. ..#.. ..#.."},
    {'8', 0, ".###. #...# #...# .###. #...# #...# #...# .###."},
    {'9', 0, ".###. #...# #...# #...# .#### ....# #...# .###."},
    {':', 3, "# # . # #"},
    {';', 3, ".# .# .. .# .# #."},
    {'<', 1, "...# ..#. .#.. #... .#.. ..#. ...#"},
    {'=', 3, "##### ..... #####"},
    {'>', 1, "#... .#.. ..#. ...# ..#. .#.. #..."},
    {'?', 0, ".###. #...# ....# ...#. ..#.. ..#.. ..... ..#.."},
    {'@', 0, ".#####. #.....# #..##.# #.#.#.# #.#.#.# #..###. #...... .#####."},
    {'A', 0, "..##.. ..##.. .#..#. .#..#. .####. #....# #....# #....#"},
    {'B', 0, "#####. #....# #....# #####. #....# #....# #....# #####."},
    {'C', 0, ".####. #....# #..... #..... #..... #..... #....# .####."},
    {'D', 0, "####.. #...#. #....# #....# #....# #....# #...#. ####.."},
    {'E', 0, "##### #.... #.... ####. #.... #.... #.... #####"},
    {'F', 0, "##### #.... #.... ####. #.... #.... #.... #...."},
    {'G', 0, ".####. #....# #..... #..... #..### #....# #...## .###.#"},
    {'H', 0, "#....# #....# #....# ###### #....# #....# #....# #....#"},
    {'I', 0, "### .#. .#. .#. .#. .#. .#. ###"},
    {'J', 0, "...# ...# ...# ...# ...# ...# #..# .##."},
    {'K', 0, "#...# #..#. #.#.. ##... ##... #.#.. #..#. #...#"},
    {'L', 0, "#.... #.... #.... #.... #.... #.... #.... #####"},
    {'M', 0, "#.....# ##...## ##...## #.#.#.# #.#.#.# #..#..# #.....# #.....#"},
    {'N', 0, "#....# ##...# ##...# #.#..# #..#.# #...## #...## #....#"},
    {'O', 0, ".####. #....# #....# #....# #....# #....# #....# .####."},
    {'P', 0, "#####. #....# #....# #....# #####. #..... #..... #....."},
    {'Q', 0, ".####. #....# #....# #....# #....# #..#.# #...#. .###.#"},
    {'R', 0, "#####. #....# #....# #####. #..#.. #...#. #...#. #....#"},
    {'S', 0, ".####. #....# #..... .###.. ....#. .....# #....# .####."},
    {'T', 0, "##### ..#.. ..#.. ..#.. ..#.. ..#.. ..#.. ..#.."},
    {'U', 0, "#....# #....# #....# #....# #....# #....# #....# .####."},
    {'V', 0, "#...# #...# #...# #...# .#.#. .#.#. ..#.. ..#.."},
    {'W', 0, "#.....# #.....# #..#..# #..#..# #.#.#.# #.#.#.# ##...## #.....#"},
    {'X', 0, "#...# #...# .#.#. ..#.. ..#.. .#.#. #...# #...#"},
    {'Y', 0, "#...# #...# .#.#. .#.#. ..#.. ..#.. ..#.. ..#.."},
    {'Z', 0, "##### ....# ...#. ..#.. ..#.. .#... #.... #####"},
    {'[', 0, "## #. #. #. #. #. #. #. ##"},
    {'\\', 0, "#... #... .#.. .#.. ..#. ..#. ...# ...#"},
    {']', 0, "## .# .# .# .# .# .# .# ##"},
    {'^', 0, "..#.. .#.#. #...#"},
    {'_', 8, "#####"},
    {'`', 0, "#. .#"},
    {'a', 2, ".###. ....# .#### #...# #...# .####"},
    {'b', 0, "#.... #.... #.##. ##..# #...# #...# ##..# #.##."},
    {'c', 2, ".###. #...# #.... #.... #...# .###."},
    {'d', 0, "....# ....# .##.# #..## #...# #...# #..## .##.#"},
    {'e', 2, ".###. #...# ##### #.... #...# .###."},
    {'f', 0, "..## .#.. #### .#.. .#.. .#.. .#.. .#.."},
    {'g', 2, ".##.# #..## #...# #...# #..## .##.# ....# .###."},
    {'h', 0, "#.... #.... #.##. ##..# #...# #...# #...# #...#"},
    {'i', 0, "# . # # # # # #"},
    {'j', 0, ".# .. .# .# .# .# .# .# .# #."},
    {'k', 0, "#... #... #..# #.#. ##.. ##.. #.#. #..#"},
    {'l', 0, "# # # # # # # #"},
    {'m', 2, "###.##. #..#..# #..#..# #..#..# #..#..# #..#..#"},
    {'n', 2, "#.##. ##..# #...# #...# #...# #...#"},
    {'o', 2, ".###. #...# #...# #...# #...# .###."},
    {'p', 2, "#.##. ##..# #...# #...# ##..# #.##. #.... #...."},
    {'q', 2, ".##.# #..## #...# #...# #..## .##.# ....# ....#"},
    {'r', 2, "#.## ##.. #... #... #... #..."},
    {'s', 2, ".###. #...# .##.. ...#. #...# .###."},
    {'t', 1, ".#.. #### .#.. .#.. .#.. .#.. ..##"},
    {'u', 2, "#...# #...# #...# #...# #..## .##.#"},
    {'v', 2, "#...# #...# .#.#. .#.#. ..#.. ..#.."},
    {'w', 2, "#..#..# #..#..# #..#..# #.#.#.# .#...#. .#...#."},
    {'x', 2, "#...# .#.#. ..#.. ..#.. .#.#. #...#"},
    {'y', 2, "#...# #...# #...# .#.#. .#.#. ..#.. ..#.. ##..."},
    {'z', 2, "##### ...#. ..#.. .#... #.... #####"},
    {'{', 0, "..# .#. .#. .#. #.. .#. .#. .#. ..#"},
    {'|', 0, "# # # # # # # # # #"},
    {'}', 0, "#.. .#. .#. .#. ..# .#. .#. .#. #.."},
    {'~', 3, ".##..# #..##."},
    {0xA1, 2, "# . # # # # # #"},
    {0xA2, 1, "..#.. .###. #.#.# #.#.. #.#.# .###. ..#.."},
    {0xA3, 0, "..##. .#..# .#... ###.. .#... .#... .#..# #.##."},
    {0xA4, 2, "#...# .###. .#.#. .###. #...#"},
    {0xA5, 0, "#...# #...# .#.#. ##### ..#.. ##### ..#.. ..#.."},
    {0xA6, 0, "# # # . . # # #"},
    {0xA7, 0, ".##. #..# #... .##. #..# .##. ...# #..# .##."},
    {0xA8, 0, "#.#"},
    {0xA9, 0, ".#####. #.....# #..##.# #.#...# #.#...# #..##.# #.....# .#####."},
    {0xAA, 0, ".### #..# .### .... ####"},
    {0xAB, 3, "..#.# .#.#. #.#.. .#.#. ..#.#"},
    {0xAC, 4, "##### ....#"},
    {0xAD, 4, "###"},
    {0xAE, 0, ".#####. #.###.# #.#.#.# #.##..# #.#.#.# #.....# .#####."},
    {0xAF, 0, "#####"},
    {0xB0, 0, ".#. #.# .#."},
    {0xB1, 2, "..#.. ..#.. ##### ..#.. ..#.. #####"},
    {0xB2, 0, "##. ..# .#. ###"},
    {0xB3, 0, "##. .#. ..# ##."},
    {0xB4, 0, ".# #."},
    {0xB5, 2, "#...# #...# #...# #...# ##..# #.##. #.... #...."},
    {0xB6, 0, ".#### ###.# ###.# .##.# ..#.# ..#.# ..#.# ..#.#"},
    {0xB7, 4, "# #"},
    {0xB8, 8, ".# #."},
    {0xB9, 0, ".# ## .# .#"},
    {0xBA, 0, ".##. #..# .##. .... ####"},
    {0xBB, 3, "#.#.. .#.#. ..#.# .#.#. #.#.."},
    {0xBC, 0, "#..#.. #..#.. #.#... #.#.#. .#.##. .#.### #...#. #...#."},
    {0xBD, 0, "#..#.. #..#.. #.#... #.#.## .#...# .#..#. #..#.. #..###"},
    {0xBE, 0, "##.#.. .#.#.. ##.#.. .##.#. ##.##. .#.### #...#. #...#."},
    {0xBF, 2, "..#.. ..... ..#.. ..#.. .#... #.... #...# .###."},
    {0xC6, 0, "..##### .#.#... .#.#... .#.###. ####... #..#... #..#... #..####"},
    {0xD0, 0, ".####.. .#...#. .#....# ###...# .#....# .#....# .#...#. .####.."},
    {0xD7, 3, "#...# .#.#. ..#.. .#.#. #...#"},
    {0xD8, 0, ".###.# #...#. #..#.# #..#.# #.#..# #.#..# .#...# #.###."},
    {0xDE, 0, "#..... #..... #####. #....# #....# #####. #..... #....."},
    {0xDF, 0, ".##.. #..#. #..#. #.#.. #..#. #...# #...# #.##."},
    {0xE6, 2, "##.##. ..#..# .##### #.#... #.#..# .#.##."},
    {0xF0, 0, ".#.#. ..#.. .#.#. .#### #...# #...# #...# .###."},
    {0xF7, 2, "..#.. ..... ##### ..... ..#.."},
    {0xF8, 2, ".##.# #..#. #.#.# #.#.# .#..# #.##."},
    {0xFE, 0, "#.... #.... #.##. ##..# #...# #...# ##..# #.##. #.... #...."},
};
// clang-format on

constexpr Drawing kBox = {0, 0, "##### #...# #...# #...# #...# #...# #...# #####"};
constexpr Drawing kDotlessI = {0, 2, "# # # # # #"};

// What stands above a letter, two rows high, or below it.
enum Accent { kGrave, kAcute, kCircumflex, kTilde, kDiaeresis, kRing, kCedilla };
constexpr std::string_view kAccents[] = {"#. .#",   ".# #.", ".#. #.#", ".#.# #.#.",
                                         "... #.#", "## ##", ".# #."};

struct Accented {
    char32_t character;  // the capital one; the small one is 0x20 greater
    char letter;         // a capital one
    Accent accent;
};

constexpr Accented kAccented[] = {
    {0xC0, 'A', kGrave},      {0xC1, 'A', kAcute},      {0xC2, 'A', kCircumflex},
    {0xC3, 'A', kTilde},      {0xC4, 'A', kDiaeresis},  {0xC5, 'A', kRing},
    {0xC7, 'C', kCedilla},    {0xC8, 'E', kGrave},      {0xC9, 'E', kAcute},
    {0xCA, 'E', kCircumflex}, {0xCB, 'E', kDiaeresis},  {0xCC, 'I', kGrave},
    {0xCD, 'I', kAcute},      {0xCE, 'I', kCircumflex}, {0xCF, 'I', kDiaeresis},
    {0xD1, 'N', kTilde},      {0xD2, 'O', kGrave},      {0xD3, 'O', kAcute},
    {0xD4, 'O', kCircumflex}, {0xD5, 'O', kTilde},      {0xD6, 'O', kDiaeresis},
    {0xD9, 'U', kGrave},      {0xDA, 'U', kAcute},      {0xDB, 'U', kCircumflex},
    {0xDC, 'U', kDiaeresis},  {0xDD, 'Y', kAcute},
};

constexpr Glyph Drawn(const Drawing& drawing) {
    Glyph glyph;
    int row = drawing.first_row + kAccentRows, column = 0;
    for (const char mark : drawing.rows) {
        if (mark == ' ') {
            ++row;
            column = 0;
            continue;
        }
        if (mark == '#') glyph.rows[static_cast<std::size_t>(row)] |= std::uint8_t(1 << column);
        glyph.width = std::max(glyph.width, ++column);
    }
    return glyph;
}

// Both in the middle; the wider one gives the width.
constexpr Glyph Combined(const Glyph& letter, const Glyph& accent) {
    Glyph glyph;
    glyph.width = std::max(letter.width, accent.width);
    const int letter_at = (glyph.width - letter.width) / 2;
    const int accent_at = (glyph.width - accent.width) / 2;
    for (std::size_t row = 0; row < glyph.rows.size(); ++row) {
        glyph.rows[row] = static_cast<std::uint8_t>(letter.rows[row] << letter_at |
                                                    accent.rows[row] << accent_at);
    }
    return glyph;
}

using Font = std::array<Glyph, 256>;

constexpr Glyph With_Accent(const Glyph& letter, int top, Accent accent) {
    const int row = accent == kCedilla ? 8 : top - 3;
    return Combined(letter, Drawn({0, row, kAccents[accent]}));
}

constexpr Font Draw_Font() {
    Font font;
    font.fill(Drawn(kBox));
    font[' '] = font[0xA0] = {.width = 3};
    for (const Drawing& drawing : kDrawings)
        font[drawing.character] = Drawn(drawing);
    for (const Accented& accented : kAccented) {
        const auto capital = static_cast<unsigned char>(accented.letter);
        const Glyph& small = capital == 'I' ? Drawn(kDotlessI) : font[capital + 0x20u];
        font[accented.character] = With_Accent(font[capital], 0, accented.accent);
        font[accented.character + 0x20] = With_Accent(small, 2, accented.accent);
    }
    font[0xFF] = With_Accent(font['y'], 2, kDiaeresis);
    return font;
}

constexpr Font kFont = Draw_Font();

// How many bytes the sequence has that begins with this one; 0 for none.
std::size_t Sequence_Length(unsigned char lead) noexcept {
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

}  // namespace

const Glyph& rv::Glyph_Of(char32_t character) noexcept {
    return kFont[character < kFont.size() ? character : 0];
}

char32_t rv::Take_Character(std::string_view& text) noexcept {
    const auto byte = [&text](std::size_t index) {
        return static_cast<unsigned char>(text[index]);
    };
    const std::size_t length = Sequence_Length(byte(0));
    char32_t character = length == 0 ? byte(0) : byte(0) & (0x7Fu >> length);
    std::size_t taken = 1;
    while (taken < length && taken < text.size() && (byte(taken) & 0xC0) == 0x80)
        character = character << 6 | (byte(taken++) & 0x3Fu);
    if (length != 0 && taken != length) {
        character = byte(0);
        taken = 1;
    }
    text.remove_prefix(taken);
    return character;
}

int rv::Width_Of(std::string_view text) noexcept {
    int width = 0;
    while (!text.empty())
        width += Glyph_Of(Take_Character(text)).width + kGlyphGap;
    return width;
}
