// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <array>

#include "base/ContentFingerprint.h"
#include "security/SecureStorage.h"

namespace {

using namespace vantorel;

Bytes someBytes(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>(i * 131);
  return bytes;
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void sealing(benchmark::State& state) {
  const auto storage = SecureStorage::ephemeral();
  const auto plaintext = someBytes(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(storage->seal(plaintext));
  countBytes(state);
}

void opening(benchmark::State& state) {
  const auto storage = SecureStorage::ephemeral();
  const auto envelope = storage->seal(someBytes(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(storage->open(envelope));
  countBytes(state);
}

/// The cipher alone, with nothing but a key schedule, into memory that is there already.
void bareCipher(benchmark::State& state) {
  const auto plaintext = someBytes(static_cast<std::size_t>(state.range(0)));
  Bytes output(plaintext.size() + 16);
  const std::array<unsigned char, 32> key{};
  const std::array<unsigned char, 12> nonce{};
  std::array<unsigned char, 16> tag{};
  auto* context = EVP_CIPHER_CTX_new();
  for (auto _ : state) {
    int written = 0;
    EVP_EncryptInit_ex(context, EVP_aes_256_gcm(), nullptr, key.data(), nonce.data());
    EVP_EncryptUpdate(context, reinterpret_cast<unsigned char*>(output.data()), &written,
                      reinterpret_cast<const unsigned char*>(plaintext.data()),
                      static_cast<int>(plaintext.size()));
    EVP_EncryptFinal_ex(context, tag.data(), &written);
    EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_AEAD_GET_TAG, 16, tag.data());
    benchmark::DoNotOptimize(output.data());
  }
  EVP_CIPHER_CTX_free(context);
  countBytes(state);
}

void fingerprint(benchmark::State& state) {
  const auto bytes = someBytes(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ContentFingerprint::data(bytes));
  countBytes(state);
}

#define VANTOREL_SIZES(name) \
  BENCHMARK(name)->Arg(1'000)->Arg(1'000'000)->Arg(12'000'000)->Unit(benchmark::kMicrosecond)

VANTOREL_SIZES(bareCipher);
VANTOREL_SIZES(sealing);
VANTOREL_SIZES(opening);
VANTOREL_SIZES(fingerprint);

}  // namespace
