#pragma once

#include <gnutls/x509.h>
#include <poll.h>

#include <atomic>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <thread>

#include "support/LocalPort.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {

/// Speaks TLS on a port of 127.0.0.1 for a server that does not: hands on to it what arrives, and back what
/// it answers. The certificate is of its own making, so nobody trusts it who was not told to.
class TlsFront {
public:
    /// behind: the port of the server on 127.0.0.1; host: whom the certificate is for; hours: how long it
    /// holds from now on, below 0 if it has expired.
    explicit TlsFront(int behind, const std::string& host = "127.0.0.1", int hours = 24)
        : behind_(behind), listener_(OpenLocally(port_)) {
        MakeCertificate(host, hours);
        thread_ = std::thread([this] { Accept(); });
    }
    ~TlsFront() {
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        ending_ = true;
        for (std::thread& thread : connections_) thread.join();
        ::close(listener_);
        gnutls_certificate_free_credentials(credentials_);
    }
    TlsFront(const TlsFront&) = delete;
    TlsFront& operator=(const TlsFront&) = delete;

    int Port() const { return port_; }
    std::string CertificateFile() const { return folder_ / "cert.pem"; }

    /// How many bytes were sent through the encryption over the first `connections`, once those have ended;
    /// -1 when there are not so many.
    long BytesOver(int connections) {
        std::unique_lock lock(mutex_);
        const bool ended =
            changed_.wait_for(lock, std::chrono::seconds(30), [&] { return ended_ >= connections; });
        return ended ? bytes_ : -1;
    }

private:
    void MakeCertificate(const std::string& host, int hours) {
        gnutls_x509_privkey_t key = nullptr;
        gnutls_x509_privkey_init(&key);
        gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1),
                                     0);
        gnutls_x509_crt_t certificate = nullptr;
        gnutls_x509_crt_init(&certificate);
        gnutls_x509_crt_set_version(certificate, 3);
        gnutls_x509_crt_set_serial(certificate, "\1", 1);
        gnutls_x509_crt_set_dn(certificate, ("CN=" + host).c_str(), nullptr);
        constexpr std::time_t Hour = 3600, Day = 24 * Hour;
        const std::time_t now = std::time(nullptr);
        gnutls_x509_crt_set_activation_time(certificate, now - Day);
        gnutls_x509_crt_set_expiration_time(certificate, now + hours * Hour);
        gnutls_x509_crt_set_basic_constraints(certificate, 1, -1);
        in_addr number{};
        if (::inet_aton(host.c_str(), &number)) {
            gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_IPADDRESS, &number, sizeof number,
                                                 0);
        } else {
            gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_DNSNAME, host.data(),
                                                 static_cast<unsigned>(host.size()), 0);
        }
        gnutls_x509_crt_set_key(certificate, key);
        if (gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_SHA256, 0) != 0)
            throw std::runtime_error("no certificate");
        gnutls_certificate_allocate_credentials(&credentials_);
        gnutls_certificate_set_x509_key(credentials_, &certificate, 1, key);
        gnutls_datum_t text{};
        gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &text);
        std::ofstream(CertificateFile()).write(reinterpret_cast<char*>(text.data), text.size);
        gnutls_free(text.data);
        gnutls_x509_crt_deinit(certificate);
        gnutls_x509_privkey_deinit(key);
    }

    void Accept() {
        for (;;) {
            const int handle = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            if (handle < 0) return;
            connections_.emplace_back([this, handle] { Converse(handle); });
        }
    }

    void Converse(int handle) {
        gnutls_session_t session = nullptr;
        gnutls_init(&session, GNUTLS_SERVER);
        gnutls_set_default_priority(session);
        gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, credentials_);
        gnutls_transport_set_int(session, handle);
        gnutls_handshake_set_timeout(session, 10'000);
        int result = 0;
        do result = gnutls_handshake(session);
        while (result < 0 && !gnutls_error_is_fatal(result));
        const long bytes = result == 0 ? HandOn(session, handle) : 0;
        gnutls_deinit(session);
        ::close(handle);
        const std::lock_guard lock(mutex_);
        bytes_ += bytes;
        ++ended_;
        changed_.notify_all();
    }

    /// Until either side goes. How many bytes the other side has sent.
    long HandOn(gnutls_session_t session, int handle) {
        const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        Connects(server, behind_);
        long received = 0;
        std::array<char, 16'384> part{};
        for (bool open = true; open && !ending_;) {
            pollfd sides[] = {
                {handle, POLLIN, 0},
                {server, POLLIN, 0}
            };
            constexpr int Milliseconds = 50;  // until it is seen that this object ends
            if (gnutls_record_check_pending(session) == 0) ::poll(sides, 2, Milliseconds);
            if (sides[0].revents || gnutls_record_check_pending(session) > 0) {
                const ssize_t size = gnutls_record_recv(session, part.data(), part.size());
                open = size > 0 || (size < 0 && !gnutls_error_is_fatal(static_cast<int>(size)));
                if (size > 0) {
                    received += size;
                    ::send(server, part.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL);
                }
            }
            if (open && sides[1].revents) {
                const ssize_t size = ::recv(server, part.data(), part.size(), 0);
                open =
                    size > 0 && gnutls_record_send(session, part.data(), static_cast<std::size_t>(size)) > 0;
            }
        }
        gnutls_bye(session, GNUTLS_SHUT_WR);
        ::close(server);
        return received;
    }

    TemporaryFolder folder_;
    const int behind_;
    int port_ = 0;
    int listener_;
    gnutls_certificate_credentials_t credentials_ = nullptr;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
    std::vector<std::thread> connections_;

    std::mutex mutex_;  ///< For what follows.
    std::condition_variable changed_;
    int ended_ = 0;
    long bytes_ = 0;
};

}  // namespace tessaloom::testing
