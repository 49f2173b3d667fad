// Edge: the cipher of catalogues, through the CryptoAPI.
#include "catalogue/decipher.h"

#include "catalogue/cipher_constants.h"
#include "foundation/owner.h"

#include <wincrypt.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace tarnwick {
namespace {

constexpr wchar_t kProvider[] = L"Microsoft Enhanced RSA and AES Cryptographic Provider";
constexpr size_t kBlockSize = 16;

struct ContextTraits {
  using Value = HCRYPTPROV;
  static Value None() { return 0; }
  static void Close(Value context) { CryptReleaseContext(context, 0); }
};

struct KeyTraits {
  using Value = HCRYPTKEY;
  static Value None() { return 0; }
  static void Close(Value key) { CryptDestroyKey(key); }
};

// The key goes before the context it was made in: members end in reverse order.
struct Cipher {
  Owner<ContextTraits> context;
  Owner<KeyTraits> key;
};

struct KeyBlob {
  BLOBHEADER header{PLAINTEXTKEYBLOB, CUR_BLOB_VERSION, 0, CALG_AES_256};
  DWORD length = static_cast<DWORD>(kCatalogueKey.size());
  std::array<uint8_t, kCatalogueKey.size()> bytes = kCatalogueKey;
};
static_assert(sizeof(KeyBlob) == 44);

std::optional<Cipher> OpenCipher() {
  Cipher cipher;
  if (!CryptAcquireContextW(cipher.context.Receive(), nullptr, kProvider, PROV_RSA_AES,
                            CRYPT_VERIFYCONTEXT)) {
    return std::nullopt;
  }
  const KeyBlob blob;
  if (!CryptImportKey(cipher.context.Get(), reinterpret_cast<const BYTE*>(&blob), sizeof blob, 0, 0,
                      cipher.key.Receive())) {
    return std::nullopt;
  }
  if (!CryptSetKeyParam(cipher.key.Get(), KP_IV, kCatalogueInitialVector.data(), 0)) return std::nullopt;
  // CBC is the provider's default, so a refusal here changes nothing.
  const DWORD mode = CRYPT_MODE_CBC;
  CryptSetKeyParam(cipher.key.Get(), KP_MODE, reinterpret_cast<const BYTE*>(&mode), 0);
  return cipher;
}

// The CryptoAPI counts bytes in 32 bits.
bool Fits(size_t size) { return size <= std::numeric_limits<DWORD>::max() - kBlockSize; }

}  // namespace

bool DecipherCatalogue(std::vector<unsigned char>& bytes) {
  if (bytes.empty() || !Fits(bytes.size())) return false;
  // The provider refuses a broken block by itself, but Wine's deciphers it first, and so writes behind the
  // vector's end.
  if (bytes.size() % kBlockSize != 0) return false;
  const std::optional<Cipher> cipher = OpenCipher();
  if (!cipher) return false;
  auto length = static_cast<DWORD>(bytes.size());
  if (!CryptDecrypt(cipher->key.Get(), 0, TRUE, 0, bytes.data(), &length)) return false;
  bytes.resize(length);
  return true;
}

bool EncipherCatalogue(std::vector<unsigned char>& bytes) {
  if (!Fits(bytes.size())) return false;
  const std::optional<Cipher> cipher = OpenCipher();
  if (!cipher) return false;
  auto length = static_cast<DWORD>(bytes.size());
  bytes.resize(bytes.size() + kBlockSize);
  if (!CryptEncrypt(cipher->key.Get(), 0, TRUE, 0, bytes.data(), &length, static_cast<DWORD>(bytes.size())))
    return false;
  bytes.resize(length);
  return true;
}

}  // namespace tarnwick
