// The views library starts empty; the window, panels and menus join it.
namespace tarnwick {}
