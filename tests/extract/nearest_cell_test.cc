#include "extract/nearest_cell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <tuple>
#include <vector>

namespace veldmark::extract {
namespace {

// Searches all cells of the globe.
std::vector<Cell> plain_cells_around(const Point& point, double radius,
                                     RowOrder order) {
  std::vector<Cell> cells;
  for (std::int32_t row = 1; row <= 360; ++row) {
    for (std::int32_t column = 1; column <= 720; ++column) {
      if (distance_km(point, centre_of({row, column}, order)) <= radius) {
        cells.push_back({row, column});
      }
    }
  }
  return cells;
}

Point random_point(std::mt19937& random) {
  const auto degrees = [&](double most) {
    const double fine = std::uniform_real_distribution<>(-most, most)(random);
    return random() % 2 == 0 ? fine : std::round(fine * 4) / 4;  // edges and centres
  };
  return {degrees(90), degrees(180)};
}

TEST(CellsAround, AgreeWithAPlainSearchOfTheGlobe) {
  std::mt19937 random(7);
  std::vector<Point> points{{90, 0},   {-90, 180},      {89.9, 10},    {0, 180},
                            {0, -180}, {45.25, 179.75}, {-45, -179.9}, {88, 0}};
  for (int i = 0; i < 30; ++i) {
    points.push_back(random_point(random));
  }
  for (const Point& point : points) {
    const double radius = std::uniform_real_distribution<>(1, 400)(random);
    for (const RowOrder order : {RowOrder::kSouthFirst, RowOrder::kNorthFirst}) {
      std::vector<Cell> cells = cells_around(point, radius, order);
      std::sort(cells.begin(), cells.end());
      ASSERT_EQ(cells, plain_cells_around(point, radius, order))
          << point.latitude << " " << point.longitude << " " << radius;
    }
  }
}

// Circles that touch a pole, enclose it, and cover half of the globe or all of it.
TEST(CellsAround, AgreeWithAPlainSearchForWideCircles) {
  const std::vector<std::tuple<Point, double>> circles{
      {{0.1, 0.25}, 10'030}, {{-3, 10}, 9'700},  {{60, -100}, 3'330},
      {{60, -100}, 3'340},   {{-45, 0}, 12'000}, {{10, 10}, 1'000'000},
      {{0, 10}, 12'000},
  };
  for (const auto& [point, radius] : circles) {
    std::vector<Cell> cells = cells_around(point, radius, RowOrder::kSouthFirst);
    std::sort(cells.begin(), cells.end());
    ASSERT_TRUE(cells == plain_cells_around(point, radius, RowOrder::kSouthFirst))
        << point.latitude << " " << point.longitude << " " << radius;
  }
}

TEST(CellsAround, IncludeACentreAtTheRadius) {
  EXPECT_EQ(cells_around({0.25, 0.25}, 0, RowOrder::kSouthFirst),
            (std::vector{Cell{181, 361}}));
}

TEST(NearestCell, AgreesWithAPlainSearch) {
  std::mt19937 random(11);
  const auto has_data = [](const Cell& cell) {
    return (cell.GridY * 7919 + cell.GridX * 104729) % 13 == 0;
  };
  int found = 0;
  for (int i = 0; i < 40; ++i) {
    const Point point = random_point(random);
    const double radius = std::uniform_real_distribution<>(20, 300)(random);
    std::vector<Cell> cells = plain_cells_around(point, radius, RowOrder::kSouthFirst);
    std::erase_if(cells, [&](const Cell& cell) { return !has_data(cell); });
    const auto nearest = nearest_cell(point, radius, RowOrder::kSouthFirst, has_data);
    ASSERT_EQ(nearest.has_value(), !cells.empty());
    if (nearest) {
      ++found;
      const auto expected =
          *std::min_element(cells.begin(), cells.end(), [&](Cell a, Cell b) {
            const auto rank = [&](const Cell& cell) {
              return std::tuple(
                  std::round(
                      distance_km(point, centre_of(cell, RowOrder::kSouthFirst)) * 1e6),
                  cell.GridY, cell.GridX);
            };
            return rank(a) < rank(b);
          });
      ASSERT_EQ(*nearest, expected);
    }
  }
  EXPECT_GT(found, 20);
}

TEST(NearestCell, PrefersTheSouthernThenTheWesternOfEqualDistances) {
  const Point centre{10.25, 20.25};
  const auto east_or_west = [](const Cell& cell) {
    return cell == Cell{201, 400} || cell == Cell{201, 402};
  };
  EXPECT_EQ(nearest_cell(centre, 60, RowOrder::kSouthFirst, east_or_west),
            (Cell{201, 400}));
  const auto north_or_south = [](const Cell& cell) {
    return cell == Cell{200, 401} || cell == Cell{202, 401};
  };
  EXPECT_EQ(nearest_cell(centre, 60, RowOrder::kSouthFirst, north_or_south),
            (Cell{200, 401}));
}

TEST(NearestCell, IsNoneBeyondTheRadius) {
  const auto next_column = [](const Cell& cell) { return cell == Cell{181, 362}; };
  const Point point{0.25, 0.25};  // 55.6 km from the next centre
  EXPECT_FALSE(nearest_cell(point, 55.5, RowOrder::kSouthFirst, next_column));
  EXPECT_TRUE(nearest_cell(point, 55.7, RowOrder::kSouthFirst, next_column));
}

}  // namespace
}  // namespace veldmark::extract
