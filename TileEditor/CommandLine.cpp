#include "TileEditor/CommandLine.h"

#include <cxxopts.hpp>
#include <iostream>

std::optional<CommandLine> CommandLine::parse(int iCount, const char* const* ppArguments)
{
    cxxopts::Options options("TileEditor", "Quillmere tile editor");
    options.add_options()("ugc", "Open editor with a UGC context", cxxopts::value<std::string>())(
        "process", "Open a text file with tiles to process", cxxopts::value<std::string>());
    try
    {
        const cxxopts::ParseResult result = options.parse(iCount, ppArguments);
        CommandLine line;
        if (result.count("ugc"))
            line.ugc = result["ugc"].as<std::string>();
        if (result.count("process"))
        {
            std::string sPath = result["process"].as<std::string>();
            std::erase(sPath, '"');
            std::replace(sPath.begin(), sPath.end(), '\\', '/');
            line.process = std::move(sPath);
        }
        return line;
    }
    catch (const cxxopts::exceptions::exception& exception)
    {
        std::cout << "Error parsing options " << exception.what() << std::endl;
        return std::nullopt;
    }
}
