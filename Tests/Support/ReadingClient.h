#pragma once

#include "HSVNClient.h"
#include "HSVNCredentials.h"
#include "RecordingDelegate.h"

#include <memory>
#include <optional>
#include <string>

/// A recorder that opens a `SvnServer` as its user harry.
struct Harry : Recorder
{
    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials, const std::optional<std::string>&,
                              bool& mayStore)
    {
        credentials->setUsername("harry");
        credentials->setPassword("harryssecret");
        mayStore = false;
        return true;
    }
};

/// A client of the newest line, or of the given one, with a delegate that every test server lets in.
struct ReadingClient
{
    std::shared_ptr<HSVNClientDelegateFor<Harry>> delegate = std::make_shared<HSVNClientDelegateFor<Harry>>();
    HSVNClientRef client;

    explicit ReadingClient(const HSVNBundleRef& bundle = nullptr)
        : client{std::make_shared<HSVNClient>(bundle, delegate)}
    {
    }
};
