#pragma once

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FtpClient.h"
#include "support/ServerProgram.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {

/// A well-known server program on 127.0.0.1, with one folder "up" to store into.
class FtpServer {
public:
    enum class Kind { Vsftpd, VsftpdTls, VsftpdImplicit, Pyftpdlib, Sshd };

    explicit FtpServer(Kind kind) : kind_(kind) {
        port_ = kind == Kind::VsftpdImplicit ? "990" : ServerProgram::FreePort();
        ::chmod(folder_.Path().c_str(), 0755);
        ::mkdir(Folder().c_str(), 0777);
        ::chmod(Folder().c_str(), 0777);
        if (kind == Kind::Pyftpdlib)
            Start({"/usr/bin/python3", "-m", "pyftpdlib", "-i", "127.0.0.1", "-p", port_, "-w", "-d",
                   folder_.Path(), "-u", "user", "-P", "secret word"});
        else if (kind == Kind::Sshd)
            StartSshd();
        else
            StartVsftpd();
    }

    bool Runs() const { return runs_; }
    std::string Folder() const { return folder_ / "up"; }
    std::string CertificateFile() const { return folder_ / "cert.pem"; }
    std::string SshFolder() const { return folder_.Path(); }  ///< Of the client.

    FtpAccount Account(bool passive) const {
        const std::string place = "127.0.0.1:" + port_;
        switch (kind_) {
            case Kind::Pyftpdlib:
                return {place, "user", "secret word", passive};
            case Kind::Sshd:
                return {"sftp://" + place, UserName(), "", passive};
            case Kind::Vsftpd:
                return {"ftp://" + place, "anonymous", "guest", passive};
            default:
                return {"ftps://" + place + "/", "anonymous", "guest", passive};
        }
    }
    /// The folder "up", as the account writes it.
    std::string RemoteFolder() const { return kind_ == Kind::Sshd ? Folder() : "up"; }

private:
    static std::string UserName() {
        const passwd* user = ::getpwuid(::getuid());
        return user ? user->pw_name : "";
    }
    void Start(std::vector<std::string> arguments) {
        program_ = std::make_unique<ServerProgram>(std::move(arguments));
        runs_ = program_->Listens(port_);
    }

    void StartVsftpd() {
        const bool tls = kind_ != Kind::Vsftpd;
        if (tls && !ServerProgram::MakeCertificate(folder_.Path())) return;
        ::mkdir((folder_ / "empty").c_str(), 0755);
        const std::string file = folder_ / "vsftpd.conf";
        {
            std::ofstream out(file);
            out << "listen=YES\nlisten_address=127.0.0.1\nlisten_port=" << port_ << "\nbackground=NO\n"
                << "anonymous_enable=YES\nlocal_enable=NO\nwrite_enable=YES\nanon_upload_enable=YES\n"
                << "anon_other_write_enable=YES\nanon_umask=022\nanon_root=" << folder_.Path()
                << "\nsecure_chroot_dir=" << (folder_ / "empty") << "\nseccomp_sandbox=NO\n"
                << "connect_from_port_20=NO\nallow_writeable_chroot=YES\nxferlog_enable=NO\n";
            if (getuid() != 0) out << "run_as_launching_user=YES\n";
            if (tls)
                out << "ssl_enable=YES\nallow_anon_ssl=YES\nforce_anon_data_ssl=YES\nforce_anon_logins_ssl="
                       "YES\n"
                    << "rsa_cert_file=" << (folder_ / "cert.pem")
                    << "\nrsa_private_key_file=" << (folder_ / "key.pem")
                    << "\nimplicit_ssl=" << (kind_ == Kind::VsftpdImplicit ? "YES\n" : "NO\n");
        }
        ::chmod(file.c_str(), 0600);
        Start({"/usr/sbin/vsftpd", file});
    }

    void StartSshd() {
        const passwd* user = ::getpwuid(::getuid());
        if (!user || std::string_view(user->pw_shell).ends_with("nologin")) return;
        if (getuid() == 0) ::mkdir("/run/sshd", 0755);
        const bool keys =
            ServerProgram::InFolder(folder_.Path(),
                                    "sh -c \"ssh-keygen -q -t ed25519 -N '' -f host && ssh-keygen -q "
                                    "-t ed25519 -N '' -f id_ed25519\"")
                ->Wait() == 0;
        if (!keys) return;
        std::ofstream(folder_ / "known_hosts")
            << "[127.0.0.1]:" << port_ << " " << FirstLine("host.pub") << "\n";
        std::ofstream(folder_ / "sshd.conf")
            << "Port " << port_ << "\nListenAddress 127.0.0.1\nHostKey " << (folder_ / "host")
            << "\nAuthorizedKeysFile " << (folder_ / "id_ed25519.pub")
            << "\nStrictModes no\nUsePAM no\nPermitRootLogin yes\nPidFile none\nSubsystem sftp "
               "internal-sftp\n";
        Start({"/usr/sbin/sshd", "-D", "-f", folder_ / "sshd.conf"});
    }

    std::string FirstLine(const std::string& file) const {
        std::string line;
        std::ifstream in(folder_ / file);
        std::getline(in, line);
        return line;
    }

    Kind kind_;
    TemporaryFolder folder_;
    std::string port_;
    bool runs_ = false;
    std::unique_ptr<ServerProgram> program_;
};

}  // namespace tessaloom::testing
