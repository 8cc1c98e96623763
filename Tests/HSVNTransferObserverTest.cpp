#include "HSVN.h"
#include "SvnServer.h"

#include <gtest/gtest.h>

namespace {

TEST(TransferObserver, HearsWhatIsTransferredForAsLongAsItLives)
{
    const SvnServer server;
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    HSVNClientSettings settings;
    settings.username = "harry";
    settings.password = "harryssecret";
    settings.prompts = HSVNPrompts::Nobody;
    settings.noAuthCache = true;
    client->applySettings(settings);
    const auto list = [&] { client->list(server.url()); };

    std::int64_t heard = 0;
    {
        const HSVNTransferObserver observer{client, [&](std::int64_t bytes, auto) { heard = bytes; }};
        list();
    }
    EXPECT_GT(heard, 0);
    const std::int64_t once = heard;
    heard = 0;
    {
        const HSVNTransferObserver observer{client, [&](std::int64_t bytes, auto) { heard = bytes; }};
        list();
        EXPECT_NEAR(static_cast<double>(heard), static_cast<double>(once), 64) << "each operation counts from zero";
    }
    heard = 0;
    list();
    EXPECT_EQ(heard, 0);

    const HSVNTransferObserver stopping{client, [](std::int64_t, auto) { throw std::range_error("enough"); }};
    EXPECT_THROW(list(), std::range_error);
}

} // namespace
