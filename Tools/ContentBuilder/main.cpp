// Lays out the game folder from the starter content: copies what is authored, makes what is generated.
//
// ContentBuilder --source StarterContent --output GAME --generator Tools/ContentBuilder [--fonts FOLDER]

#include "Tools/ContentBuilder/Clutter.h"
#include "Tools/ContentBuilder/ImageFile.h"
#include "Tools/ContentBuilder/Materials.h"
#include "Tools/ContentBuilder/Models/ModelFiles.h"
#include "Tools/ContentBuilder/OutputFolder.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace content
{

namespace
{

namespace fs = std::filesystem;

struct Options
{
    fs::path source;
    fs::path output;
    fs::path generator; ///< the sources of this program: generated files depend on them
    fs::path fonts;
};

bool readOptions(int iCount, char** ppTexts, Options& options)
{
    for (int i = 1; i + 1 < iCount; i += 2)
    {
        const std::string_view sName = ppTexts[i];
        fs::path* pPath = sName == "--source"      ? &options.source
                          : sName == "--output"    ? &options.output
                          : sName == "--generator" ? &options.generator
                          : sName == "--fonts"     ? &options.fonts
                                                   : nullptr;
        if (!pPath)
            return false;
        *pPath = ppTexts[i + 1];
    }
    return iCount % 2 == 1 && !options.source.empty() && !options.output.empty() &&
           !options.generator.empty();
}

std::vector<fs::path> filesBelow(const fs::path& folder)
{
    std::vector<fs::path> vecFiles;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(folder, error))
        if (entry.is_regular_file())
            vecFiles.push_back(entry.path());
    std::sort(vecFiles.begin(), vecFiles.end());
    return vecFiles;
}

/// Files of one kind: what changes in the models leaves the ground's textures as they are, and so on.
enum class Sources : uint8_t
{
    Ground,
    ModelPictures,
    Models,
};

uint64_t hashOfSources(const fs::path& folder, Sources eSources)
{
    uint64_t uHash = hashBytes("content");
    for (const fs::path& file : filesBelow(folder))
    {
        const bool bModels = file.parent_path().filename() == "Models";
        const bool bPictures = bModels && file.stem() == "AssetTextures";
        if (eSources == (bPictures ? Sources::ModelPictures : bModels ? Sources::Models : Sources::Ground))
            uHash = hashBytes(readFile(file), hashBytes(file.filename().string(), uHash));
    }
    return uHash;
}

bool copyTree(const Options& options, OutputFolder& output)
{
    bool bDone = true;
    for (const char* pFolder : {"Data", "Survival", "ChallengeData"})
    {
        std::error_code error;
        fs::create_directories(options.output / pFolder, error);
        for (const fs::path& file : filesBelow(options.source / pFolder))
            if (!file.filename().string().starts_with('.'))
                bDone = output.copy(file, fs::relative(file, options.source).generic_string()) && bDone;
    }
    return bDone;
}

bool copyFonts(const Options& options, OutputFolder& output)
{
    if (options.fonts.empty())
        return true;
    bool bDone = true;
    for (const char* pFont : {"Inter-Regular.otf", "Inter-Medium.otf", "Inter-SemiBold.otf"})
    {
        if (fs::exists(options.fonts / pFont))
            bDone = output.copy(options.fonts / pFont, std::string("Data/Gui/Fonts/") + pFont) && bDone;
        else
        {
            std::fprintf(stderr, "No font %s\n", (options.fonts / pFont).c_str());
            bDone = false;
        }
    }
    return bDone;
}

bool makeMaterial(const Material& material, uint64_t uInputs, OutputFolder& output)
{
    const std::string sBase = material.pFile;
    const std::vector<std::string> vecFiles = {sBase + "_dif.png", sBase + "_asg.png", sBase + "_nor.png"};
    if (output.isCurrent(vecFiles, uInputs))
        return true;
    Canvas canvas;
    material.fnPaint(canvas);
    const Canvas::Maps maps = canvas.maps(material.fRelief, material.fShade);
    const std::array<const std::vector<uint8_t>*, 3> arrMaps = {&maps.vecDiffuse, &maps.vecAsg,
                                                                &maps.vecNormal};
    for (size_t u = 0; u < vecFiles.size(); ++u)
        if (!writeImage(output.prepare(vecFiles[u]), Canvas::s_iSide, Canvas::s_iSide, *arrMaps[u]))
        {
            std::fprintf(stderr, "Failed to write %s\n", vecFiles[u].c_str());
            return false;
        }
    output.markMade(vecFiles, uInputs);
    return true;
}

bool makeClutter(const ClutterType& type, uint64_t uInputs, OutputFolder& output)
{
    const std::string sBase = type.pFile;
    std::vector<std::string> vecFiles = {sBase + ".obj", sBase + "_dif.png"};
    if (type.bImpostor)
        vecFiles.push_back(sBase + "_imp.png");
    if (output.isCurrent(vecFiles, uInputs))
        return true;
    const ClutterShape shape = type.fnShape();
    Sprite sprite;
    type.fnPaint(sprite);
    const std::vector<uint8_t> vecPicture = sprite.pixels();
    std::ofstream mesh(output.prepare(vecFiles[0]), std::ios::binary);
    mesh << shape.text();
    mesh.close();
    const bool bDone =
        mesh.good() &&
        writeImage(output.prepare(vecFiles[1]), Sprite::s_iSide, Sprite::s_iSide, vecPicture) &&
        (!type.bImpostor || writeImage(output.prepare(vecFiles[2]), ImpostorSide, ImpostorSide,
                                       makeImpostor(shape, vecPicture)));
    if (!bDone)
        std::fprintf(stderr, "Failed to write %s\n", type.pFile);
    else
        output.markMade(vecFiles, uInputs);
    return bDone;
}

/// What stands in for a map that is missing: mid grey, flat, unshadowed.
bool makeDefaultTextures(uint64_t uInputs, OutputFolder& output)
{
    struct Plain
    {
        const char* pFile;
        std::array<uint8_t, 4> arrColour;
    };
    constexpr std::array<Plain, 4> s_arrPlain = {
        {{"Data/Textures/Default/default_dif.tga", {128, 128, 128, 255}},
         {"Data/Textures/Default/default_nor.tga", {128, 128, 255, 255}},
         {"Data/Textures/Default/default_asg.tga", {255, 38, 128, 255}},
         {"Data/Textures/Default/default_ao.tga", {255, 255, 255, 255}}}};
    for (const Plain& plain : s_arrPlain)
    {
        if (output.isCurrent({plain.pFile}, uInputs))
            continue;
        std::vector<uint8_t> vecPixels(16 * 16 * 4);
        for (size_t u = 0; u < vecPixels.size(); ++u)
            vecPixels[u] = plain.arrColour[u % 4];
        if (!writeImage(output.prepare(plain.pFile), 16, 16, vecPixels))
            return false;
        output.markMade({plain.pFile}, uInputs);
    }
    return true;
}

/// Waits for a program; false when it can't be started or fails.
bool runProgram(std::vector<std::string> vecTexts)
{
    std::vector<char*> vecPointers;
    for (std::string& sText : vecTexts)
        vecPointers.push_back(sText.data());
    vecPointers.push_back(nullptr);
    const pid_t iChild = fork();
    if (iChild == 0)
    {
        execvp(vecPointers[0], vecPointers.data());
        _exit(127);
    }
    int iStatus = 0;
    return iChild > 0 && waitpid(iChild, &iStatus, 0) == iChild && WIFEXITED(iStatus) &&
           WEXITSTATUS(iStatus) == 0;
}

/// Icons and skins are drawn as SVG and used as PNG of the same name beside it, at the size that the
/// drawing gives.
bool makeIcon(const fs::path& svg, const Options& options, OutputFolder& output)
{
    const std::string sFile = fs::relative(svg, options.source).replace_extension(".png").generic_string();
    const uint64_t uInputs = hashBytes(readFile(svg), hashBytes("drawn size"));
    if (output.isCurrent({sFile}, uInputs))
        return true;
    if (!runProgram({"rsvg-convert", "-o", output.prepare(sFile).string(), svg.string()}))
    {
        std::fprintf(stderr, "rsvg-convert failed on %s\n", svg.c_str());
        return false;
    }
    output.markMade({sFile}, uInputs);
    return true;
}

/// Runs jobs on all cores; false when one failed.
bool runAll(const std::vector<std::function<bool()>>& vecJobs)
{
    std::atomic<size_t> uNext = 0;
    std::atomic<bool> bDone = true;
    const auto work = [&]
    {
        for (size_t u = uNext++; u < vecJobs.size(); u = uNext++)
            if (!vecJobs[u]())
                bDone = false;
    };
    std::vector<std::thread> vecThreads;
    for (unsigned u = 1; u < std::max(std::thread::hardware_concurrency(), 1u); ++u)
        vecThreads.emplace_back(work);
    work();
    for (std::thread& thread : vecThreads)
        thread.join();
    return bDone;
}

int build(const Options& options)
{
    std::error_code error;
    fs::create_directories(options.output, error);
    OutputFolder output(options.output);
    const uint64_t uGenerator = hashOfSources(options.generator, Sources::Ground);
    const uint64_t uModels = hashOfSources(options.generator, Sources::Models);
    const uint64_t uPictures = hashOfSources(options.generator, Sources::ModelPictures);

    std::vector<std::function<bool()>> vecJobs;
    for (const std::span<const Material> spanSet : {standardMaterials(), autumnMaterials()})
        for (const Material& material : spanSet)
            vecJobs.emplace_back([&material, uGenerator, &output]
                                 { return makeMaterial(material, uGenerator, output); });
    for (const ClutterType& type : clutterTypes())
        vecJobs.emplace_back([&type, uGenerator, &output] { return makeClutter(type, uGenerator, output); });
    for (auto& job : modelJobs(uModels, uPictures, output))
        vecJobs.push_back(std::move(job));
    for (const fs::path& file : filesBelow(options.source / "Data"))
        if (file.extension() == ".svg")
            vecJobs.emplace_back([file, &options, &output] { return makeIcon(file, options, output); });

    bool bDone = copyTree(options, output);
    bDone = copyFonts(options, output) && bDone;
    bDone = makeDefaultTextures(uGenerator, output) && bDone;
    bDone = runAll(vecJobs) && bDone;
    bDone = output.finish() && bDone;
    if (output.changedCount() > 0)
        std::printf("Game folder: %zu files changed in %s\n", output.changedCount(), options.output.c_str());
    return bDone ? 0 : 1;
}

} // namespace

} // namespace content

int main(int iCount, char** ppTexts)
{
    content::Options options;
    if (!content::readOptions(iCount, ppTexts, options))
    {
        std::fprintf(
            stderr,
            "Usage: ContentBuilder --source FOLDER --output FOLDER --generator FOLDER [--fonts FOLDER]\n");
        return 2;
    }
    return content::build(options);
}
