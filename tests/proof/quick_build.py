"""How the parts that build often configure: without what only costs time on this machine."""

import shutil


def options():
    """Options for cmake of a build without optimization and debug information."""
    chosen = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DTESSMAR_TESTS=ON"]
    if shutil.which("ccache"):
        # What was compiled once is not compiled again, which precompiled headers would spoil.
        chosen += ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DTESSMAR_PCH=OFF"]
    if shutil.which("ld.lld"):
        chosen.append("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld")
    return chosen
