#include "platform/ffmpeg/CertificateCheck.h"

#include <dlfcn.h>
#include <gnutls/x509.h>

#include <cstring>
#include <optional>
#include <utility>

#include "platform/ffmpeg/Library.h"

namespace tessaloom {

namespace {

constexpr const char* HandshakeName = "gnutls_handshake";

thread_local CertificateCheck* current = nullptr;

/// What people are told, the gravest first.
constexpr std::pair<unsigned, const char*> Faults[] = {
    {GNUTLS_CERT_REVOKED,            "revoked"              },
    {GNUTLS_CERT_SIGNER_NOT_FOUND,   "unknown issuer"       },
    {GNUTLS_CERT_EXPIRED,            "expired"              },
    {GNUTLS_CERT_NOT_ACTIVATED,      "not valid yet"        },
    {GNUTLS_CERT_UNEXPECTED_OWNER,   "made for another host"},
    {GNUTLS_CERT_INSECURE_ALGORITHM, "too weak"             },
    {GNUTLS_CERT_PURPOSE_MISMATCH,   "not made for a server"},
};

const char* Fault(unsigned status) {
    for (const auto& [fault, words] : Faults)
        if (status & fault) return words;
    return "not valid";
}

/// Whom a session of libavformat is meant to reach, name or number.
std::optional<std::string> HostOf(gnutls_session_t session) {
    std::uint8_t* host = nullptr;
    if (av_opt_get(gnutls_transport_get_ptr(session), "verifyhost", AV_OPT_SEARCH_CHILDREN, &host) < 0 ||
        !host)
        return std::nullopt;
    std::string text = reinterpret_cast<char*>(host);
    av_free(host);
    return text;
}

/// Makes a file the only authority of a session.
bool TrustOnly(gnutls_session_t session, const std::string& file) {
    void* credentials = nullptr;
    if (gnutls_credentials_get(session, GNUTLS_CRD_CERTIFICATE, &credentials) < 0) return false;
    gnutls_x509_trust_list_t list = nullptr;
    if (gnutls_x509_trust_list_init(&list, 0) < 0) return false;
    const int count =
        gnutls_x509_trust_list_add_trust_file(list, file.c_str(), nullptr, GNUTLS_X509_FMT_PEM, 0, 0);
    // Takes the list over.
    gnutls_certificate_set_trust_list(static_cast<gnutls_certificate_credentials_t>(credentials), list, 0);
    return count > 0;
}

/// GnuTLS's own.
int ShakeHands(gnutls_session_t session) {
    static const auto own = reinterpret_cast<int (*)(gnutls_session_t)>(dlsym(RTLD_NEXT, HandshakeName));
    return own ? own(session) : GNUTLS_E_INTERNAL_ERROR;
}

}  // namespace

CertificateCheck::CertificateCheck(std::string authorities) : authorities_(std::move(authorities)) {
    current = this;
}

CertificateCheck::~CertificateCheck() { current = nullptr; }

bool CertificateCheck::InForce() {
    static const bool inForce =
        std::strstr(avformat_configuration(), "--enable-gnutls") &&
        dlsym(RTLD_DEFAULT, HandshakeName) == reinterpret_cast<void*>(&gnutls_handshake);
    return inForce;
}

int CertificateCheck::Handshake(gnutls_session_t session) {
    gnutls_session_set_verify_function(session, &CertificateCheck::Judge);
    const int result = ShakeHands(session);
    if (result < 0 && !gnutls_error_is_fatal(result)) return result;
    const bool trusted = std::exchange(trusted_, nullptr) == session;
    return result < 0 || trusted ? result : GNUTLS_E_CERTIFICATE_ERROR;
}

int CertificateCheck::Judge(gnutls_session_t session) {
    if (!current || !current->Trusts(session)) return GNUTLS_E_CERTIFICATE_ERROR;
    current->trusted_ = session;
    return 0;
}

bool CertificateCheck::Trusts(gnutls_session_t session) {
    std::optional<std::string> host = HostOf(session);
    unsigned status = GNUTLS_CERT_INVALID;
    if (host && (authorities_.empty() || TrustOnly(session, authorities_))) {
        char purpose[] = GNUTLS_KP_TLS_WWW_SERVER;
        gnutls_typed_vdata_st demands[] = {
            {GNUTLS_DT_DNS_HOSTNAME,    reinterpret_cast<unsigned char*>(host->data()), 0},
            {GNUTLS_DT_KEY_PURPOSE_OID, reinterpret_cast<unsigned char*>(purpose),      0},
        };
        if (gnutls_certificate_verify_peers(session, demands, 2, &status) == 0 && status == 0) return true;
    }
    refusal_ = std::string("certificate refused: ") + Fault(status) + " (" + host.value_or("") + ")";
    return false;
}

}  // namespace tessaloom

/// In the place of GnuTLS's own, for the libraries of FFmpeg.
extern "C" __attribute__((visibility("default"))) int gnutls_handshake(gnutls_session_t session) {
    tessaloom::CertificateCheck* check = tessaloom::current;
    return check ? check->Handshake(session) : tessaloom::ShakeHands(session);
}
