#pragma once
#include <string>

#include "core/messages.h"

namespace zorvik {

constexpr const char* kTextFileError = "File saving error. May be open by Excell?";

// The bytes of a text file: the text and the closing CR LF of the line-oriented print.
inline std::string textFileBytes(const std::string& text) {
  return text + "\r\n";
}

// Writes the text and its closing CR LF in place of any file of that name. Any failure (an empty name
// included) shows the critical box kTextFileError under the given title and returns false; an earlier
// file of that name then stays as it was.
bool WriteTextFile(const std::string& path, const std::string& text, MessageSink& messages,
                   const std::string& title);

}  // namespace zorvik
