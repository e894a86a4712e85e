#pragma once

#include <string>
#include <vector>

/// What an administrator gives to the package; empty where nothing was given.
struct RolloutValues
{
    std::string layout;
    std::string clientFolder;
    std::string logLevel;
    std::string serviceAddress;
    std::string servicePort;
    std::string serviceMode;
    std::string guardPort;
    std::string translation;
};

/// What is wrong with the values: one line for each, which names the property and what it may be,
/// in Chinese and English (UTF-8). Empty when all can be used.
std::vector<std::string> complaints(const RolloutValues &values);
