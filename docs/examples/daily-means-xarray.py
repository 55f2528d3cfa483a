#!/usr/bin/env python3
"""daily-means-xarray.py FILE.nc [FILE.csv]: the mean of each channel for each day of a NetCDF file, with
xarray and pandas; with the analysis CSV of the same records, checks that both files hold the same.

Debian: apt install python3-xarray python3-netcdf4 python3-pandas"""

import sys
import warnings

import pandas
import xarray

# Said by some versions of xarray at each time that is missing.
warnings.filterwarnings("ignore", "invalid value encountered in cast")
data = xarray.open_dataset(sys.argv[1])
channels = [name for name in data.data_vars if "decimals" in data[name].attrs]
print(data.attrs["title"], "-", data.sizes["obs"], "records")
for name in channels:
    print(f"{name}: {data[name].attrs['long_name']}, {data[name].attrs.get('comment', 'as measured')}")

good = data.where(data.disagreement == 0, drop=True)
table = pandas.DataFrame({name: good[name].values for name in channels},
                         index=pandas.DatetimeIndex(good.time.values, name="day"))
means = table.resample("D").mean().dropna(how="all")
print(means.round(3).to_string())

if len(sys.argv) > 2:
    same = pandas.read_csv(sys.argv[2], parse_dates=["logger_time", "corrected_time"])
    assert (same["logger_time"].values == data.time.values).all()
    assert same["corrected_time"].isna().sum() == int(data.time_corrected.isnull().sum())
    assert (same["disagreement"].values == data.disagreement.values).all()
    for number, name in enumerate(channels):
        pandas.testing.assert_series_equal(same.iloc[:, 2 + number],
                                           pandas.Series(data[name].values), check_names=False,
                                           check_dtype=False, check_exact=True)
    print("the CSV holds the same")
