"""The executable itself."""

import ctypes
import pathlib
import subprocess
import zlib

from rig.app import built_programs

SOURCES = pathlib.Path(__file__).parents[2] / "qml"
ZSTD_MAGIC = b"\x28\xb5\x2f\xfd"
UNKNOWN_SIZES = (2**64 - 1, 2**64 - 2)


def source_lines():
    """Lines of the views that nothing but their text contains."""
    for path in [*SOURCES.glob("**/*.qml"), *SOURCES.glob("**/*.js")]:
        for line in path.read_text().splitlines():
            if len(line.strip()) > 15 and " " in line.strip():
                yield line.strip()


def unpacked_zlib(data):
    position = data.find(b"\x78")
    while position >= 0:
        if position + 1 < len(data) and (0x7800 + data[position + 1]) % 31 == 0:
            try:
                yield zlib.decompressobj().decompress(data[position:], 1 << 20)
            except zlib.error:
                pass
        position = data.find(b"\x78", position + 1)


def unpacked_zstd(data):
    library = ctypes.CDLL("libzstd.so.1")
    for name in ("ZSTD_getFrameContentSize", "ZSTD_findFrameCompressedSize", "ZSTD_decompress"):
        getattr(library, name).restype = ctypes.c_ulonglong
    position = data.find(ZSTD_MAGIC)
    while position >= 0:
        frame = data[position:]
        size = library.ZSTD_getFrameContentSize(frame, ctypes.c_size_t(len(frame)))
        packed = library.ZSTD_findFrameCompressedSize(frame, ctypes.c_size_t(len(frame)))
        if size not in UNKNOWN_SIZES and packed <= len(frame):
            text = ctypes.create_string_buffer(size)
            library.ZSTD_decompress(text, ctypes.c_size_t(size), frame, ctypes.c_size_t(packed))
            yield text.raw
        position = data.find(ZSTD_MAGIC, position + 1)


def lines_found_in(data):
    places = [data, *unpacked_zlib(data), *unpacked_zstd(data)]
    return {line for line in source_lines()
            if any(line.encode(code) in place for place in places for code in ("utf-8", "utf-16-le"))}


def test_views_are_in_it_only_compiled(directory):
    assert len(set(source_lines())) > 20
    assert lines_found_in(pathlib.Path(built_programs(), "vireon").read_bytes()) == set()

    # The search itself finds a view that was packed in the usual ways.
    (directory / "main.qml").write_bytes((SOURCES / "main.qml").read_bytes())
    (directory / "main.qrc").write_text("<RCC><qresource><file>main.qml</file></qresource></RCC>")
    for packing in (["--no-compress"], ["--compress-algo", "zlib"], ["--compress-algo", "zstd"]):
        subprocess.run(["/usr/lib/qt5/bin/rcc", "--binary", *packing, "main.qrc", "-o", "packed"],
                       cwd=directory, check=True)
        assert lines_found_in((directory / "packed").read_bytes()), packing
