#pragma once

#include "support/LocalHttpServer.h"

namespace tessaloom::testing {

/// Answers as an RTSP camera does, then sends `film`, an MPEG transport stream, over the same line.
inline void PlayAsRtsp(LocalHttpServer::Connection& line, const std::string& film) {
    std::string head = line.Request();
    for (bool playing = false; !playing && !head.empty(); head = playing ? "" : line.NextHead()) {
        const std::string sdp = "v=0\r\no=- 0 0 IN IP4 0.0.0.0\r\ns=x\r\nt=0 0\r\nm=video 0 RTP/AVP 33\r\n";
        const std::size_t number = head.find("CSeq:");
        playing = head.starts_with("PLAY");
        std::string answer = "Session: 1\r\n\r\n";
        if (head.starts_with("DESCRIBE"))
            answer = "Content-Type: application/sdp\r\nContent-Length: " + std::to_string(sdp.size()) +
                     "\r\n\r\n" + sdp;
        if (head.starts_with("SETUP"))
            answer = "Session: 1\r\nTransport: RTP/AVP/TCP;unicast;interleaved=0-1\r\n\r\n";
        line.Send("RTSP/1.0 200 OK\r\n" + head.substr(number, head.find('\n', number) + 1 - number) + answer);
    }
    constexpr std::size_t Part = std::size_t{7} * 188, Head = 12;
    std::string packet = {'$', 0, char((Part + Head) >> 8), char((Part + Head) & 0xFF), char(0x80), 33};
    packet.resize(4 + Head);
    for (std::size_t part = 0; (part + 1) * Part <= film.size(); ++part) {
        packet[6] = static_cast<char>(part >> 8), packet[7] = static_cast<char>(part);
        if (!line.Send(packet + film.substr(part * Part, Part))) return;
    }
}

}  // namespace tessaloom::testing
