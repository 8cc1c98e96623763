#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

// Where Subversion keeps passwords and passphrases: the platform's stores first, which encrypt, then its own files,
// which do not.

namespace HSVNAdapter {

/// The stores of user names and passwords as one provider. A password goes into a file only when `Prompts::plaintext`
/// allows it.
svn_auth_provider_object_t* passwordStores(apr_pool_t* pool);

/// The same for the passphrases of client certificates, which the user's `servers` file may hold too.
svn_auth_provider_object_t* passphraseStores(apr_pool_t* pool);

/// Lets the stores of a baton ask by these prompts, which live as long as the baton; null leaves those that it has. A
/// baton without prompts stores nothing unencrypted.
///
/// @return whether the baton has prompts
bool setStorePrompts(svn_auth_baton_t* baton, const HSVNAuthenticationFunctions::Prompts* prompts);

} // namespace HSVNAdapter
