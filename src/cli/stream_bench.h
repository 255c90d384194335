#pragma once
#include <QJsonObject>
#include <string>

namespace zorvik {

// zorvik-cli bench --device ADDRESS [--packets N] [--samples N]: the transport alone. Opens a session
// with the instrument served there, asks for records of N samples (default 8192) in a serial run, and
// times `packets` "D" packets as the link delivers them, after a warm-up. Serve the instrument with
// `--sim rate=max` to measure the stream rather than the pacing. Throws Fault when no session stands
// or the packets stop coming.
QJsonObject benchStream(const std::string& device, int packets, int samples);

}  // namespace zorvik
