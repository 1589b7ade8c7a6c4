"""Prints what xarray reads in extracts: file, latitude, longitude, year, month, value.

    print_netcdf.py FILE.nc...

The values are the stored integers times the file's scale, to two decimals. What xarray makes
of them by itself, in 32 bits, must be the same to that precision.
"""

import sys
from pathlib import Path

import numpy
import xarray


def month_of(stamp):
    return stamp.astype("datetime64[M]").astype(int) % 12 + 1


def read_series(name):
    """(latitude, longitude, year, month, value) of each value that is there."""
    with xarray.open_dataset(name) as decoded, \
            xarray.open_dataset(name, mask_and_scale=False) as plain:
        variable = next(v for v in plain.data_vars if "scale_factor" in plain[v].attrs)
        stored, physical = plain[variable], decoded[variable]
        missing = stored.attrs["_FillValue"]
        assert stored.dtype == numpy.int16
        known = stored.values != missing
        assert (known == ~numpy.isnan(physical.values)).all()
        values = stored.values * stored.attrs["scale_factor"]
        assert numpy.allclose(physical.values[known], values[known], rtol=1e-6, atol=1e-6)
        times = decoded["time"].values
        years, months = times.astype("datetime64[Y]").astype(int) + 1970, month_of(times)
        if stored.dims == ("time", "lat", "lon"):
            for t, y, x in zip(*known.nonzero()):
                yield (float(plain["lat"][y]), float(plain["lon"][x]), years[t], months[t],
                       f"{values[t, y, x]:.2f}")
        else:
            assert stored.dims == ("site", "time") and plain.attrs["featureType"] == "timeSeries"
            for s, t in zip(*known.nonzero()):
                yield (float(plain["cell_lat"][s]), float(plain["cell_lon"][s]), years[t],
                       months[t], f"{values[s, t]:.2f}")


def main():
    for name in sys.argv[1:]:
        for lat, lon, *rest in read_series(name):
            lon = (lon + 180) % 360 - 180  # a grid across the meridian runs on beyond 180
            print(Path(name).name, lat, lon, *rest)


if __name__ == "__main__":
    main()
