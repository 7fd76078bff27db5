"""What the sample's products have in common, and what their setup is called.

The maker Velkmora exists only here.
"""

MAKER = "Velkmora"
NAME = "Zolt 2027"
VERSION = "27.0.0"
SETUP_CODE = "{6E1B6C0A-6E0B-4F52-9C5C-27A1D3A4E270}"
STEP = "Zolt 2027 deployment"

PLATFORMS = {2: {"folder": "x86", "template": "Intel", "programs": "ProgramFilesFolder"},
             3: {"folder": "x64", "template": "x64", "programs": "ProgramFiles64Folder"}}

# The fixed links and help of the media.
LINKS = ["Deployment Guide.html", "Release Notes.html"]
