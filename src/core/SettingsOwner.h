#pragma once

namespace tessaloom {

/// The document that stores an object's settings, as the object sees it.
class SettingsOwner {
public:
    /// A setting that the document's file holds has changed.
    virtual void SettingChanged() = 0;

protected:
    ~SettingsOwner() = default;
};

}  // namespace tessaloom
