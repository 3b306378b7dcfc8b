#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "core/INI.h"
#include "model/DocumentFault.h"
#include "model/Key.h"
#include "platform/PrivateProfile.h"

namespace tessaloom {

/// Why there is nothing to read in a file; "" where there is.
std::string_view ReasonOf(ProfileState state);

/// One document file while it is read: values with their defaults, and faults as they are found.
class DocumentReader {
public:
    enum class Mode {
        Completing,  ///< As `Reading::Completing`.
        Passive,     ///< As `Reading::Passive`.
        Checking,    ///< Passive, and nothing that could set something going is switched.
    };

    /// All outlive the reader.
    DocumentReader(INI& ini, Mode mode, const DocumentFaultHandler& faults)
        : ini_(ini), mode_(mode), faults_(faults) {}

    static Mode ModeOf(Reading reading) {
        return reading == Reading::Completing ? Mode::Completing : Mode::Passive;
    }

    Mode ReadingMode() const { return mode_; }

    /// The value of the key, or `fallback`, which is also stored where that is the mode.
    std::string Get(std::string_view section, std::string_view key, std::string_view fallback);

    /// The value of the key, "" when it is missing; nothing is stored.
    std::string Peek(std::string_view section, std::string_view key);

    void Fault(std::string_view section, std::string_view key, std::string_view value,
               std::string_view reason) const;

    /// Reads one key into its owner. prefix: stands before the key's own name.
    template <typename Owner>
    void Load(std::string_view section, const Key<Owner>& key, Owner& owner, std::string_view fallback,
              std::string_view prefix = {}) {
        const std::string name = std::string(prefix).append(key.name);
        const std::string text = Get(section, name, fallback);
        const bool judgeOnly = key.acts && mode_ == Mode::Checking;
        const KeyFault fault = judgeOnly ? key.judge(text) : key.read(owner, text);
        if (fault == KeyFault::None) return;
        std::string reason(DescriptionOf(fault));
        if (!judgeOnly) reason += ", " + key.write(owner) + " taken";
        Fault(section, name, key.secret ? "***" : text, reason);
    }

    /// Reads the keys of one table in its order.
    template <typename Owner>
    void Load(std::string_view section, std::span<const Key<Owner>> keys, std::type_identity_t<Owner>& owner,
              std::string_view prefix = {}) {
        for (const Key<Owner>& key : keys) Load(section, key, owner, key.fallback, prefix);
    }

    /// Reads the keys of one table in the order of `names`, which holds each of them once.
    template <typename Owner>
    void LoadInOrder(std::string_view section, std::span<const Key<Owner>> keys,
                     std::span<const std::string_view> names, std::type_identity_t<Owner>& owner) {
        for (const std::string_view name : names)
            for (const Key<Owner>& key : keys)
                if (key.name == name) Load(section, key, owner, key.fallback);
    }

    /// Notes from now on which keys are asked for. `Asked` tells, without regard to ASCII case.
    void NoteKeys() { noting_ = true; }
    bool Asked(std::string_view section, std::string_view key) const;
    bool AskedSection(std::string_view section) const;

private:
    void Note(std::string_view section, std::string_view key);

    INI& ini_;
    Mode mode_;
    const DocumentFaultHandler& faults_;
    bool noting_ = false;
    std::set<std::pair<std::string, std::string>> asked_;
};

/// A transaction on a document's file. What is not committed is dropped.
class DocumentTransaction {
public:
    explicit DocumentTransaction(INI& ini) : ini_(ini) { ini_.Begin(); }
    ~DocumentTransaction() {
        if (open_) ini_.Rollback();
    }
    DocumentTransaction(const DocumentTransaction&) = delete;
    DocumentTransaction& operator=(const DocumentTransaction&) = delete;

    /// False when the file had to be written and could not be.
    bool Commit() {
        open_ = false;
        return ini_.Commit();
    }

private:
    INI& ini_;
    bool open_ = true;
};

/// Saves a document whole or not at all. `File` is how the document keeps itself: `PortfolioFile`,
/// `CanvasFile`.
template <typename File>
bool SaveDocument(PrivateProfile& profile, std::string_view path, const File& file) {
    INI ini(profile, path);
    DocumentTransaction transaction(ini);
    if (file.HoldsSecret()) ini.SetOwnerOnly();
    file.Save(ini);
    return transaction.Commit();
}

/// Writes the keys of one table in its order.
template <typename Owner>
void SaveKeys(INI& ini, std::string_view section, std::span<const Key<Owner>> keys,
              const std::type_identity_t<Owner>& owner, std::string_view prefix = {}) {
    for (const Key<Owner>& key : keys)
        ini.SetKey(section, std::string(prefix).append(key.name), key.write(owner));
}

}  // namespace tessaloom
