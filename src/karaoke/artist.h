#pragma once

namespace libquilp {

/// Returns the code of the gender marker at the start of `text` and stores its length. Returns 0
/// and stores nothing if there is none.
int getGender(const unsigned char* text, int* length);

/// Finds the next separator: returns 0 and stores the offset after it, or returns 1 if there is
/// none.
int skipToNextArtist(const unsigned char* text, int* length);

}  // namespace libquilp
