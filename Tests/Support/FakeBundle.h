#pragma once

#include "FakeBundleState.h"

#include <string>

/// A package in a folder that holds its own copy of the fake bundle, or whatever record and code a test wants.
class FakeBundle
{
  public:
    /// @param folder   the folder that the package is made in
    /// @param name     the package's name, with its extension
    /// @param version  CFBundleVersion, which its Subversion reports as well
    FakeBundle(const std::string& folder, const std::string& name, const std::string& version = "9.8.7");

    const std::string& path() const { return _path; }
    /// Whether the library or a test has loaded the code.
    bool isLoaded() const;
    /// The code's state; loads the code.
    FakeBundleState& state() const;

  private:
    std::string _path;
    std::string _version;
};
