#pragma once

#include "support/ServerProgram.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// The ffmpeg program with a source of its own ("-re" for one that runs at its own speed), then `rest`.
inline std::vector<std::string> Ffmpeg(const std::string& graph, const std::vector<std::string>& rest,
                                       bool paced = false) {
    std::vector<std::string> words = {"ffmpeg", "-v", "quiet", "-nostdin", "-y"};
    if (paced) words.emplace_back("-re");
    words.insert(words.end(), {"-f", "lavfi", "-i", graph});
    words.insert(words.end(), rest.begin(), rest.end());
    return words;
}

/// Makes a clip of `graph` at `path`, which it gives back.
inline std::string MakeClip(const std::string& path, const std::string& graph,
                            std::vector<std::string> options = {}) {
    options.push_back(path);
    EXPECT_EQ(ServerProgram(Ffmpeg(graph, options)).Wait(), 0) << path;
    return path;
}

}  // namespace tessaloom::testing
