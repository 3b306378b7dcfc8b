#pragma once

#include <gnutls/gnutls.h>

#include <string>

namespace tessaloom {

/// While one lives, each TLS connection that its thread opens by FFmpeg's libraries is refused unless the
/// server proves by its certificate to be the host that was asked for; nothing of a request is sent before.
///
/// The libraries themselves verify what they open first, but neither the line to an RTSP camera nor the parts
/// that a playlist names. So this program stands between them and GnuTLS: its `gnutls_handshake` is found
/// before the library's own, which it calls in turn. Handshakes of threads without such an object are left
/// alone.
class CertificateCheck {
public:
    /// authorities: the file of those to trust, in place of the system's.
    explicit CertificateCheck(std::string authorities = "");
    ~CertificateCheck();
    CertificateCheck(const CertificateCheck&) = delete;
    CertificateCheck& operator=(const CertificateCheck&) = delete;

    /// Why a server was refused, for people; "" while none was.
    const std::string& Refusal() const { return refusal_; }

    /// Whether the libraries reach GnuTLS through this program alone. If not (they may have been built for
    /// another TLS library, or the program without its symbols), nothing is verified, so nothing secured may
    /// be opened.
    static bool InForce();

    /// One turn of a handshake; the library's own result, or an error of its kind.
    int Handshake(gnutls_session_t session);

private:
    static int Judge(gnutls_session_t session);
    bool Trusts(gnutls_session_t session);

    const std::string authorities_;
    std::string refusal_;
    gnutls_session_t trusted_ = nullptr;  ///< Its handshake is under way, and the server was found good.
};

}  // namespace tessaloom
