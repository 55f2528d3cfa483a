# Rscript daily-means.R FILE.nc FILE.csv: the mean of each channel for each day, from a NetCDF file and
# from the analysis CSV of the same records.
#
# Debian: apt install r-base-core r-cran-ncdf4

files <- commandArgs(trailingOnly = TRUE)

# NetCDF
library(ncdf4)
file <- nc_open(files[1])
channels <- Filter(function(name) ncatt_get(file, name, "decimals")$hasatt, names(file$var))
agreed <- ncvar_get(file, "disagreement") == 0
# Seconds by the logger's clock, whatever zone that was set to.
time <- as.POSIXct(ncvar_get(file, "time"), origin = "1970-01-01", tz = "UTC")
cat(ncatt_get(file, 0, "title")$value, "-", length(time), "records\n")
values <- sapply(channels, function(name) ncvar_get(file, name))
means <- aggregate(values[agreed, , drop = FALSE], list(day = as.Date(time[agreed])), mean, na.rm = TRUE)
print(means, digits = 5)
for (name in channels) cat(name, ": ", ncatt_get(file, name, "long_name")$value, "\n", sep = "")
nc_close(file)

# CSV
table <- read.csv(files[2], check.names = FALSE, fileEncoding = "UTF-8")
csvTime <- as.POSIXct(table$logger_time, format = "%Y-%m-%dT%H:%M:%S", tz = "UTC")
stopifnot(all(csvTime == time), all((table$disagreement == 0) == agreed))
for (i in seq_along(channels)) stopifnot(all.equal(as.numeric(table[[2 + i]]), as.numeric(values[, i])))
cat("the CSV holds the same\n")
