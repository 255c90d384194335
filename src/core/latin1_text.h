#pragma once
#include <QString>
#include <string>
#include <string_view>

namespace zorvik {

// Byte strings shown as text, and typed text made bytes again. Each byte 0..255 is the character of the
// same code (ISO 8859-1), so every byte the instrument or a file gives survives the way there and back,
// and nothing is guessed about an encoding. Used for instrument texts, file contents, message texts and
// captions; not for file paths (those take QFile::encodeName/decodeName) and not for the program's
// engineering texts (UTF-8, for their µ).

QString latin1Text(std::string_view bytes);

// A character above 255 has no byte: it becomes kNoLatin1Byte, once per character (a pair of UTF-16
// surrogates is one character).
constexpr char kNoLatin1Byte = '?';
std::string latin1Bytes(const QString& text);

}  // namespace zorvik
