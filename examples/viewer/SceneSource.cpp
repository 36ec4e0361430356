#include "SceneSource.h"

namespace KesraViewer
{

bool LoadScene(const std::string& file, SceneData& data, std::string& error)
{
    if (!file.empty())
    {
        error = file + ": this build reads no VTK files";
        return false;
    }
    data = FlowSceneData();
    return true;
}

} // namespace KesraViewer
