#include "till/store/json_letters.h"

#include <algorithm>
#include <array>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace till {

namespace {

    constexpr std::array<bool, 128> plainAscii = [] {
        std::array<bool, 128> plain {};
        std::fill(plain.begin() + ' ', plain.end(), true);
        plain['"'] = false;
        plain['\\'] = false;
        return plain;
    }();

    /// Of an escape that has a letter; none for the others.
    [[nodiscard]] char shortEscape(char16_t letter)
    {
        switch (letter) {
        case u'"':
        case u'\\':
            return static_cast<char>(letter);
        case u'\b':
            return 'b';
        case u'\f':
            return 'f';
        case u'\n':
            return 'n';
        case u'\r':
            return 'r';
        case u'\t':
            return 't';
        default:
            return '\0';
        }
    }

    [[nodiscard]] char* escape(char16_t letter, char* place)
    {
        *place++ = '\\';
        if (const char name = shortEscape(letter); name != '\0') {
            *place++ = name;
            return place;
        }
        *place++ = 'u';
        for (const unsigned shift : { 12U, 8U, 4U, 0U }) {
            *place++ = "0123456789abcdef"[(static_cast<unsigned>(letter) >> shift) & 0xfU];
        }
        return place;
    }

    /// In UTF-8, where every byte but the first brings six bits.
    [[nodiscard]] char* encode(char32_t letter, char* place)
    {
        const auto following
            = [letter](unsigned shift) { return static_cast<char>(0x80U | ((letter >> shift) & 0x3fU)); };
        if (letter < 0x800U) {
            *place++ = static_cast<char>(0xc0U | (letter >> 6U));
        } else if (letter < 0x10000U) {
            *place++ = static_cast<char>(0xe0U | (letter >> 12U));
            *place++ = following(6);
        } else {
            *place++ = static_cast<char>(0xf0U | (letter >> 18U));
            *place++ = following(12);
            *place++ = following(6);
        }
        *place++ = following(0);
        return place;
    }

    constexpr qsizetype block = 8; // letters that the processor looks at at once

    /// Copies a block, and tells whether each of its letters is ASCII and stands for itself.
    [[nodiscard]] inline bool copyPlainBlock(const char16_t* from, char* place)
    {
#ifdef __SSE2__
        const __m128i letters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        const __m128i bytes = _mm_packus_epi16(letters, letters); // what is no byte comes out as 0 or 255
        _mm_storel_epi64(reinterpret_cast<__m128i*>(place), bytes);
        const __m128i refused = _mm_or_si128(
            _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')), // signed: those beyond ASCII are negative
            _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))));
        return _mm_movemask_epi8(refused) == 0;
#else
        for (qsizetype i = 0; i < block; ++i) {
            if (from[i] >= plainAscii.size() || !plainAscii[from[i]]) {
                return false;
            }
            place[i] = static_cast<char>(from[i]);
        }
        return true;
#endif
    }

    /// Copies letters from the beginning for as long as they stand for themselves, a block at least of those that are
    /// left; the last block overlaps the one before it. Returns how many.
    [[nodiscard]] inline qsizetype copyPlain(QStringView value, char* place)
    {
        const char16_t* const from = value.utf16();
        const qsizetype size = value.size();
        qsizetype done = 0;
        while (size - done >= block) {
            if (!copyPlainBlock(from + done, place + done)) {
                return done;
            }
            done += block;
        }
        if (done < size && done > 0 && copyPlainBlock(from + size - block, place + size - block)) {
            return size;
        }
        return done;
    }

    [[nodiscard]] char* encodeRest(QStringView value, char* place)
    {
        const char16_t* from = value.utf16();
        const char16_t* const end = from + value.size();
        while (from != end) {
            const char16_t letter = *from++;
            if (letter < plainAscii.size()) {
                if (plainAscii[letter]) {
                    *place++ = static_cast<char>(letter);
                } else {
                    place = escape(letter, place);
                }
            } else if (!QChar::isSurrogate(letter)) {
                place = encode(letter, place);
            } else if (QChar::isHighSurrogate(letter) && from != end && QChar::isLowSurrogate(*from)) {
                place = encode(QChar::surrogateToUcs4(letter, *from++), place);
            } else {
                place = escape(letter, place);
            }
        }
        return place;
    }

} // namespace

char* writeLetters(QStringView text, char* place)
{
    const qsizetype plain = copyPlain(text, place);
    return plain == text.size() ? place + plain : encodeRest(text.sliced(plain), place + plain);
}

} // namespace till
