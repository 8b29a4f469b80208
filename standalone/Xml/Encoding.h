#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velahost {

// The encodings that a codebook may have.
enum class Encoding { Utf8, Ascii, Latin1 };

// The encoding of that name, in any case; nothing for another.
std::optional<Encoding> EncodingNamed(std::string_view name);
// The encoding's registered name.
const char* NameOf(Encoding encoding);

// Markup or text in UTF-8 as bytes of the encoding. A character that the encoding lacks becomes a
// character reference.
std::string Encode(std::string utf8, Encoding encoding);

// Bytes of the encoding as UTF-8.
std::string Decode(std::string_view bytes, Encoding encoding);

}  // namespace velahost
