#include "tests/support/Files.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Failure.h"

#include <fstream>
#include <sstream>

namespace korvane {

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) fatalError("The test file " + path + " cannot be read.");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

Bytes readPemAsDer(const std::string& path) {
    std::istringstream lines(readFile(path));
    std::string base64;
    for (std::string line; std::getline(lines, line) && !line.starts_with("-----END");)
        if (!line.starts_with("-----BEGIN")) base64 += line;
    return fromBase64(base64).value();
}

} // namespace korvane
