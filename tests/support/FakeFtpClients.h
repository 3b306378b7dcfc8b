#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/FtpClient.h"

namespace tessaloom::testing {

/// A server that keeps what is stored, and does with each command what a test has laid ready.
class FakeFtpClients : public FtpClients {
public:
    enum class Answer { Complete, Error, None, Lost };

    std::vector<std::string> commands;          ///< "LOGIN server user passive", "STOR path", ...
    std::deque<Answer> answers;                 ///< To the next commands; then all are complete.
    std::map<std::string, std::string> stored;  ///< By path.
    int clients = 0;

    /// The idle connections break.
    void LoseConnections() {
        for (Client* client : clients_) client->Lose();
    }

    std::unique_ptr<FtpClient> MakeClient(FtpListener& listener) override {
        return std::make_unique<Client>(*this, listener);
    }
    void Poll() override {
        for (Client* client : clients_) client->Tell();
    }
    std::string ProcessMark() const override { return "77"; }

private:
    class Client : public FtpClient {
    public:
        Client(FakeFtpClients& owner, FtpListener& listener) : owner_(owner), listener_(listener) {
            owner_.clients_.push_back(this);
            ++owner_.clients;
        }
        ~Client() override {
            std::erase(owner_.clients_, this);
            --owner_.clients;
        }

        void LogIn(const FtpAccount& account) override {
            Take("LOGIN " + account.server + " " + account.userName + (account.passive ? " passive" : ""));
            connected_ = answer_ == Answer::Complete;
        }
        void StoreFile(Bytes bytes, std::string_view path) override {
            if (Take(std::string("STOR ").append(path)))
                owner_.stored[std::string(path)].assign(bytes->begin(), bytes->end());
        }
        void DeleteFile(std::string_view path) override {
            if (Take(std::string("DELE ").append(path)) && owner_.stored.erase(std::string(path)) == 0)
                answer_ = Answer::Error;
        }
        void RenameFile(std::string_view from, std::string_view to) override {
            if (!Take(std::string("RENAME ").append(from).append(" ").append(to))) return;
            owner_.stored[std::string(to)] = owner_.stored[std::string(from)];
            owner_.stored.erase(std::string(from));
        }
        void NoOp() override { Take("NOOP"); }
        void LogOut() override {
            Take("QUIT");
            connected_ = false;
        }
        void Disconnect() override {
            owner_.commands.emplace_back("(disconnect)");
            answer_.reset();
            connected_ = false;
        }
        bool Connected() const override { return connected_; }

        void Tell() {
            const auto answer = std::exchange(answer_, {});
            if (answer == Answer::Complete) listener_.FtpComplete();
            if (answer == Answer::Error) listener_.FtpError(550, "550 Refused");
            if (answer == Answer::Lost) {
                listener_.FtpError(56, "Connection lost");
                Lose();
            }
        }
        void Lose() {
            connected_ = false;
            listener_.FtpState(false, false);
        }

    private:
        bool Take(std::string command) {
            owner_.commands.push_back(std::move(command));
            answer_ = Answer::Complete;
            if (!owner_.answers.empty()) {
                answer_ = owner_.answers.front();
                owner_.answers.pop_front();
            }
            return answer_ == Answer::Complete;
        }

        FakeFtpClients& owner_;
        FtpListener& listener_;
        std::optional<Answer> answer_;
        bool connected_ = false;
    };

    std::vector<Client*> clients_;
};

}  // namespace tessaloom::testing
