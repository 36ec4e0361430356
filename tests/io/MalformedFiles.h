// Malformed files for the readers' tests: each must be refused with a
// ReadError whose text holds every given part (the place, the expectation).
#pragma once

#include "KesraIo/PolyData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace KesraTest
{

struct Malformed
{
    const char* what;
    std::string file;
    std::vector<std::string> message; // each part must appear in the message
};

// Reads each case's file with read(file) and checks the refusal.
template <typename Read>
void ExpectRefused(const std::vector<Malformed>& cases, Read read)
{
    for (const Malformed& bad : cases)
    {
        try
        {
            read(bad.file);
            ADD_FAILURE() << bad.what << ": accepted";
        }
        catch (const KesraIo::ReadError& error)
        {
            for (const std::string& part : bad.message)
            {
                EXPECT_NE(std::string(error.what()).find(part), std::string::npos)
                    << bad.what << ": '" << part << "' not in: " << error.what();
            }
        }
    }
}

} // namespace KesraTest
