# The maker's web pages, for packagers to set. The base address ends with a slash.
set(VIREON_SUPPORT_URL "https://support.vireon.example/" CACHE STRING
    "Help desk, with a slash at its end")
set(VIREON_FIRMWARE_MANUAL_URL "${VIREON_SUPPORT_URL}manuals/firmware-update.pdf" CACHE STRING
    "Firmware update manual")
set(VIREON_REMOTE_PEN_DOWNLOAD_URL "${VIREON_SUPPORT_URL}downloads/remote-pen" CACHE STRING
    "Download page of the remote-pen product")
configure_file("${PROJECT_SOURCE_DIR}/src/ui/supportaddresses.h.in"
    "${PROJECT_BINARY_DIR}/generated/ui/supportaddresses.h" @ONLY)
