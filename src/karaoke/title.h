#pragma once

namespace libquilp {

/// Counts words: each non-ASCII character is one word; so is each run that starts with a letter or
/// digit and ends before a blank, a "_" or a non-ASCII character. 0 for null.
int utf8_word(const unsigned char* text);

/// Returns the code of the language marker at the start of `text`; 0 if there is none. Stores the
/// length of a Latin marker only.
int getLanguage(const unsigned char* text, int* length);

/// Returns the code of the vocal-track marker at the start of `text` and stores its length. Returns
/// 0 and stores nothing if there is none.
int getVocalTrack(const unsigned char* text, int* length);

}  // namespace libquilp
