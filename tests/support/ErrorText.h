// SPDX-License-Identifier: MIT
//
// The words with which a call fails.
#ifndef TALVANE_TESTS_SUPPORT_ERRORTEXT_H
#define TALVANE_TESTS_SUPPORT_ERRORTEXT_H

#include <string>

// The text of the error of this kind that the call throws; "no complaint" when it throws nothing.
template <typename Error, typename Call>
std::string ErrorText(Call call) {
    try {
        (void)call();
    } catch (const Error& error) {
        return error.what();
    }
    return "no complaint";
}

#endif
