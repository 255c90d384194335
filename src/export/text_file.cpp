#include "export/text_file.h"

#include <exception>

#include "export/file_io.h"

namespace zorvik {

bool WriteTextFile(const std::string& path, const std::string& text, MessageSink& messages,
                   const std::string& title) {
  try {
    writeFileReplacing(path, textFileBytes(text));
    return true;
  } catch (const std::exception&) {
    messages.show(BoxKind::Critical, title, kTextFileError);
    return false;
  }
}

}  // namespace zorvik
