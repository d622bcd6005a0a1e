# Sourced by ./run, ./test and .ci/run: the packages and the build that they need.

# ensure_packages LIST...: installs the Debian packages of the lists that are missing when that is
# allowed, and says exactly which are missing when it is not.
ensure_packages() {
    local wanted missing=() package become=()
    wanted=$(sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$@")
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian; these packages, or what they stand for, must be there:" $wanted
        return 0
    fi
    for package in $wanted; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then become=(sudo -n); fi
    if [ ${#become[@]} -eq 0 ] || sudo -n true 2>/dev/null; then
        echo "Installing: ${missing[*]}"
        "${become[@]}" apt-get update -qq &&
            "${become[@]}" env DEBIAN_FRONTEND=noninteractive \
                apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null &&
            return 0
    fi
    echo "Missing packages: ${missing[*]}"
    echo "Install them with: apt-get install ${missing[*]}"
    return 1
}

# ensure_build PRESET TARGET...: configures and builds what changed.
ensure_build() {
    local preset=$1
    shift
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target "$@" -- -j"$(nproc)"
}
