# SPDX-License-Identifier: MIT
#
# To be sourced: an apt of one's own, which downloads Debian 12's packages of any architecture and
# knows no installed one. It needs neither root nor a foreign architecture on this computer.
# VM_MIRROR names the archive; the default is the one that this computer gets its packages from.
# Set by this file: $mirror.

# shellcheck disable=SC2034  # for the caller's messages
mirror=${VM_MIRROR:-$(apt-get indextargets --format '$(SITE)' 'Codename: bookworm' | head -n 1)}
mirror=${mirror:-http://deb.debian.org/debian}

# start_apt FOLDER ARCHITECTURE: from here on apt works in FOLDER, which is made anew. Fails when
# the list of packages cannot be read.
start_apt() {
    rm -rf "$1"
    mkdir -p "$1/state/lists/partial" "$1/cache/archives/partial"
    : >"$1/status"
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror bookworm main" \
        >"$1/sources.list"
    cat >"$1/apt.conf" <<END
APT::Architecture "$2";
APT::Architectures { "$2"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
Dir::State "$1/state";
Dir::State::status "$1/status";
Dir::Cache "$1/cache";
Dir::Etc::sourcelist "$1/sources.list";
Dir::Etc::sourceparts "-";
Acquire::Languages "none";
Acquire::Retries "2";
Acquire::http::Timeout "30";
END
    export APT_CONFIG="$1/apt.conf"
    # Without this apt makes do with a list that it could not get.
    apt-get -q -o APT::Update::Error-Mode=any update
}
