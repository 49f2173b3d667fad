#pragma once
// Enciphered catalogues: AES with a 256-bit key in CBC mode with PKCS#7 padding, by the Windows CryptoAPI.
// The cipher text stands alone, without header or marker. Both calls may be made on any thread.

#include <vector>

namespace tarnwick {

// Replaces cipher text by its plain text, which may be empty. False if there are no bytes, if they are no
// cipher text of this key (as far as their length and padding show), or if the provider is missing; the bytes
// are then of no use.
bool DecipherCatalogue(std::vector<unsigned char>& bytes);

// The reverse, for those who maintain catalogues; an empty text gives one block of padding. False if the
// provider is missing, and the bytes are then of no use.
bool EncipherCatalogue(std::vector<unsigned char>& bytes);

}  // namespace tarnwick
