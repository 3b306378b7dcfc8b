#pragma once

#include "support/ServerProgram.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {

/// A web server on 127.0.0.1 that speaks TLS, with a certificate of its own making, and one file to fetch:
/// the openssl program, run as a child.
class TlsServer {
public:
    TlsServer(const std::string& name, std::string_view contents) {
        std::ofstream(folder_ / name) << contents;
        if (!ServerProgram::MakeCertificate(folder_.Path())) return;
        program_ = ServerProgram::InFolder(folder_.Path(), "openssl s_server -accept 127.0.0.1:" + port_ +
                                                               " -cert cert.pem -key key.pem -WWW");
        runs_ = program_->Listens(port_);
    }

    bool Runs() const { return runs_; }
    std::string Address(std::string_view path) const { return ("https://127.0.0.1:" + port_).append(path); }
    std::string CertificateFile() const { return folder_ / "cert.pem"; }

private:
    TemporaryFolder folder_;
    const std::string port_ = ServerProgram::FreePort();
    std::unique_ptr<ServerProgram> program_;
    bool runs_ = false;
};

}  // namespace tessaloom::testing
