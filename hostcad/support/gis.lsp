;; placeholder while the commands are being written
