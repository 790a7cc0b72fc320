#pragma once

namespace libquilp {

/// The code of the gender marker that `text` starts with, whose length is stored; 0, and nothing
/// stored, when there is none.
int getGender(const unsigned char* text, int* length);

/// Looks for the next separator: 0, and the offset after it stored; 1 when there is none.
int skipToNextArtist(const unsigned char* text, int* length);

}  // namespace libquilp
