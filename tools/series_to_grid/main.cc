// series_to_grid: expands series of single grid cells into a grid file.

#include "companion/run.h"
#include "series_to_grid/series_to_grid.h"

int main(int argc, char** argv) {
  using namespace veldmark;  // NOLINT
  return companion::run_main(
      argc, argv, "series_to_grid",
      [](companion::Arguments arguments, const companion::Environment& environment) {
        return series_to_grid::run_series_to_grid(arguments, environment);
      });
}
