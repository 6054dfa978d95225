#pragma once

#include <string>

/// What the user chose on the command line, the same for every host.
struct HostOptions {
    static constexpr const char* demoPhone = "demo";
    static constexpr const char* linuxPhone = "linux";

    /// "demo", "linux", or the path of a file that describes a phone.
    std::string phone = defaultPhone();
    /// The folder below which the phone's files lie; empty for the user's own.
    std::string root;
    /// Whether what is missing (folders, an empty settings file, the bundle) is made before the first page opens.
    bool provision = true;

    /// The machine itself for an installed program; the demo phone for one that lies beside the bundle it was built
    /// with.
    static std::string defaultPhone();
    /// $XDG_DATA_HOME/tandem, or ~/.local/share/tandem.
    static std::string defaultRoot();
};

/// The folder of the running program.
std::string programDirectory();
/// The folder of the bundle, and the demo phone's file, that belong to this program: beside it when it was built, in
/// the system's folders when it was installed. Empty when neither is there.
std::string ownBundleDirectory();
std::string ownDemoPhone();
