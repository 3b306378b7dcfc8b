#include "model/DocumentFault.h"

namespace tessaloom {

std::string DocumentFault::Text() const {
    std::string text = file;
    if (line > 0) text.append("(").append(std::to_string(line)).append(")");
    if (!section.empty()) text.append(" [").append(section).append("]");
    if (!key.empty()) text.append(" ").append(key);
    if (!value.empty()) text.append("=").append(value);
    return text + ": " + reason;
}

}  // namespace tessaloom
