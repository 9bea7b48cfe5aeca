#include "app/Application.h"
#include "ui/QuillmarkMainWindow.h"

int main(int argc, char** argv)
{
    Application::RunHooks hooks;
    hooks.makeWindow = [] { return new QuillmarkMainWindow(); };
    return Application::run(argc, argv, hooks);
}
