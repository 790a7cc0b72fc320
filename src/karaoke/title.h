#pragma once

namespace libquilp {

/// The number of words: each character beyond ASCII is one, and each run that starts with a letter
/// or a digit and goes on to a blank, a "_" or such a character. 0 for null.
int utf8_word(const unsigned char* text);

/// The code of the language marker that `text` starts with, 0 when there is none. Only a Latin
/// marker stores its length.
int getLanguage(const unsigned char* text, int* length);

/// The code of the vocal-track marker that `text` starts with, whose length is stored; 0, and
/// nothing stored, when there is none.
int getVocalTrack(const unsigned char* text, int* length);

}  // namespace libquilp
