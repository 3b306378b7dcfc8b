#pragma once

#include <cassert>
#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/modNumbers.h"
#include "model/Key.h"
#include "model/edit/PropertySet.h"

namespace tessaloom {

/// The properties of one owner of keys: descriptions and keys are brought together by their names.
template <typename Owner>
class KeySet final : public PropertySet {
public:
    using Keys = std::span<const Key<Owner>>;

    struct Subject {
        std::function<Owner*()> find;             ///< Null when the owner has gone.
        Schedule* (*schedule)(Owner&) = nullptr;  ///< Of owners that have one.
        int canvas = 0;                           ///< The slot of the canvas that it belongs to.
        std::optional<LayerId> layer = {};        ///< What it is, where it is a layer.
        /// Called with the name of what is to be set, and what sets it.
        std::function<void(std::string_view, const std::function<void()>&)> around = {};
    };

    KeySet(std::span<const Property> rows, std::initializer_list<Keys> tables, Subject subject)
        : rows_(rows.begin(), rows.end()), subject_(std::move(subject)) {
        for (Property& row : rows_) {
            for (const Keys& keys : tables)
                for (const Key<Owner>& key : keys)
                    if (key.name == row.name) keys_.push_back(&key);
            TakeSlot(row);
        }
        assert(keys_.size() == rows_.size());
    }

    std::span<const Property> Properties() const override { return rows_; }
    bool Exists() const override { return subject_.find() != nullptr; }

    std::string Get(std::size_t row) const override {
        const Owner* const owner = subject_.find();
        return owner ? keys_.at(row)->write(*owner) : std::string();
    }

    KeyFault Set(std::size_t row, const std::string& text) override {
        Owner* const owner = subject_.find();
        if (!owner) return KeyFault::None;
        const Key<Owner>& key = *keys_.at(row);
        KeyFault fault = key.judge(text);
        const auto set = [&] {
            if (fault == KeyFault::None)
                fault = key.read(*owner, text);
            else if (fault == KeyFault::OutOfRange)
                key.read(*owner, Nearest(rows_[row], text));
        };
        if (subject_.around)
            subject_.around(key.name, set);
        else
            set();
        return fault;
    }

    int CanvasSlot() const override { return subject_.canvas; }
    std::vector<LayerId> Layers() const override {
        return subject_.layer && Exists() ? std::vector{*subject_.layer} : std::vector<LayerId>();
    }

    Schedule* ScheduleOf(std::size_t row) const override {
        if (rows_.at(row).kind != PropertyKind::Schedule || !subject_.schedule) return nullptr;
        Owner* const owner = subject_.find();
        return owner ? subject_.schedule(*owner) : nullptr;
    }

private:
    /// In defaults, "##" stands for the two digits of the canvas's slot.
    void TakeSlot(Property& row) {
        const auto at = row.fallback.find("##");
        if (at == row.fallback.npos) return;
        const std::string digits = (subject_.canvas < 10 ? "0" : "") + std::to_string(subject_.canvas);
        row.fallback = fallbacks_.emplace_back(std::string(row.fallback).replace(at, 2, digits));
    }

    /// The end of the range on the side of a number that is too large for its kind.
    static std::string Nearest(const Property& row, const std::string& text) {
        double number = 0;
        if (row.low >= row.high || !modNumbers::TryDblNI(text, number)) return text;
        return modNumbers::CStrNI(number < row.low ? row.low : row.high);
    }

    std::vector<Property> rows_;
    std::vector<const Key<Owner>*> keys_;
    std::deque<std::string> fallbacks_;  ///< Texts of defaults that are the canvas's own.
    Subject subject_;
};

}  // namespace tessaloom
